#pragma once
// Where one variable's run of values for an instance lies, and its reading: a row of an orthogonal
// array (instance first), a column of one stored the other way round (instance last), the whole
// variable (a single instance, or a coordinate all instances share), or a stretch of a contiguous
// ragged array. Rows and ragged stretches are read through a block window.

#include <cstdint>
#include <memory>
#include <vector>

#include <zorvodsg/cursor/detail/NcSlabReader.h>
#include <zorvodsg/cursor/detail/RaggedIndex.h>
#include <zorvodsg/cursor/detail/SampleWindow.h>
#include <zorvodsg/netcdf/ICFMetadata.h>
#include <zorvodsg/netcdf/Variable.h>
#include <zorvodsg/values/NcVariantArray.h>

namespace ZorvoNetCDFDSG::detail {

class RunSource {
public:
    // A variable along the instance dimension (first or last axis), or the whole variable when
    // `idInstanceDim` is -1 or not among its axes.
    static RunSource Orthogonal(ZorvoDSG::ICFMetadata& dataset, const ZorvoDSG::Variable& variable,
                                long idInstanceDim, uint64_t blockValues);
    static RunSource Ragged(ZorvoDSG::ICFMetadata& dataset, const ZorvoDSG::Variable& variable,
                            std::shared_ptr<const RaggedIndex> index, uint64_t blockValues);

    // The run of `instance`, typed as the variable (fill values stay as stored).
    void Read(NcSlabReader& reader, uint64_t instance, ZorvoDSG::System::NcVariantArray& out);
    void ReadDoubles(NcSlabReader& reader, uint64_t instance, std::vector<double>& out);
    // Values in a run when every instance has the same number; the first instance's count otherwise.
    uint64_t cValuesPerRun() const;
    void SetBlockValues(uint64_t blockValues) { m_window.SetBlockValues(blockValues); }

private:
    enum eKind { eRows, eWhole, eColumns, eRagged };
    RunSource(eKind kind, ZorvoDSG::ICFMetadata& dataset, const ZorvoDSG::Variable& variable, uint64_t blockValues);
    // The slab of an instance of a variable whose instance axis is not the first.
    void SelectColumn(uint64_t instance);

    eKind m_kind;
    ZorvoDSG::Variable m_variable;
    SampleWindow m_window;
    std::shared_ptr<const RaggedIndex> m_index;
    size_t m_instanceAxis = 0;
    uint64_t m_cInstances = 0;
    ZorvoDSG::System::NcVariant m_fill;  // columns: the variable's fill value in its own type
    std::vector<size_t> m_start;
    std::vector<size_t> m_count;
};

}  // namespace ZorvoNetCDFDSG::detail
