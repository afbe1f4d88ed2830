#pragma once
// The vertices of one instance in a variable of an orthogonal trajectory dataset, by the way the
// variable is laid out:
//   eRows     (instance, obs): a row, read a block of rows at a time through a SampleWindow;
//   eWhole    (obs) of the one instance of a single-instance dataset: the whole variable, read once;
//   eColumns  (obs, instance): a column, read as one hyperslab per instance (the values of one
//             instance are strided in the file, so blocks would not save library calls).
// A character variable may have its string axis behind these.

#include <cstdint>
#include <vector>

#include <zorvodsg/cursor/detail/NcSlabReader.h>
#include <zorvodsg/cursor/detail/SampleWindow.h>
#include <zorvodsg/netcdf/ICFMetadata.h>
#include <zorvodsg/netcdf/Variable.h>
#include <zorvodsg/values/NcVariantArray.h>

namespace ZorvoNetCDFDSG::detail {

class OrthoRun {
public:
    enum eShape { eRows, eWhole, eColumns };

    // `blockValues`: values per library call for eRows.
    OrthoRun(ZorvoDSG::ICFMetadata& dataset, const ZorvoDSG::Variable& variable, eShape shape, uint64_t cVertices,
             uint64_t blockValues);

    // The instance's values into `out` (re-typed and grown as needed).
    void Copy(NcSlabReader& reader, uint64_t instance, ZorvoDSG::System::NcVariantArray& out);
    // The same converted to doubles, into `out` (resized to the vertex count).
    void CopyDoubles(NcSlabReader& reader, uint64_t instance, std::vector<double>& out);
    void SetBlockValues(uint64_t blockValues) { m_window.SetBlockValues(blockValues); }

private:
    void SelectColumn(uint64_t instance);

    eShape m_shape;
    uint64_t m_cVertices;
    ZorvoDSG::Variable m_variable;
    SampleWindow m_window;
    std::vector<size_t> m_start;  // eColumns: the hyperslab of one column
    std::vector<size_t> m_count;
};

}  // namespace ZorvoNetCDFDSG::detail
