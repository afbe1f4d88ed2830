#pragma once
// Runs of a variable's values along its first axis, read a block at a time: the observations of one
// feature are the elements [first, first + n) of the first axis (a ragged array's sample dimension,
// or an orthogonal array's instance dimension, whose elements are then whole rows). A window of at
// least `blockElements` values is read with one hyperslab and the runs are copied out of it, so a
// scan makes one library call per block instead of one per feature and variable.
//
// Every element of the first axis holds ValuesPerElement() values: the product of the other axes'
// lengths, less a character variable's string axis, whose characters make one value.

#include <cstdint>
#include <filesystem>
#include <vector>

#include <zorvodsg/cursor/detail/NcSlabReader.h>
#include <zorvodsg/netcdf/ICFMetadata.h>
#include <zorvodsg/netcdf/Variable.h>
#include <zorvodsg/values/NcVariantArray.h>

namespace ZorvoNetCDFDSG::detail {

// Bytes per value of a character variable read as observations: its string axis when it has one
// beside the axis it runs along, else single characters.
long ObservationStringWidth(const ZorvoDSG::Variable& variable);

class SampleWindow {
public:
    SampleWindow(ZorvoDSG::ICFMetadata& dataset, const ZorvoDSG::Variable& variable, uint64_t blockValues);

    uint64_t ValuesPerElement() const { return m_valuesPerElement; }
    uint64_t cElements() const { return m_cElements; }
    // The values of elements [first, first + n) into `out` (re-typed and grown as needed).
    void Copy(NcSlabReader& reader, uint64_t first, uint64_t n, ZorvoDSG::System::NcVariantArray& out);
    // The same converted to doubles, into `out` (resized).
    void CopyDoubles(NcSlabReader& reader, uint64_t first, uint64_t n, std::vector<double>& out);
    void SetBlockValues(uint64_t blockValues);

private:
    // The values of n elements; Exception eNotDSGConformant beyond kMaxValuesPerRead.
    uint64_t LimitedValues(uint64_t n, const std::filesystem::path& path) const;

    // Makes elements [first, first + n) available in the window.
    void Cover(NcSlabReader& reader, uint64_t first, uint64_t n, bool bDoubles);
    void Select(uint64_t first, uint64_t n);

    ZorvoDSG::Variable m_variable;
    // The variable's fill as its own type, worked out once: every copied run is initialised with it.
    ZorvoDSG::System::NcVariant m_fill;
    std::vector<size_t> m_start;
    std::vector<size_t> m_count;
    uint64_t m_cElements = 0;
    uint64_t m_valuesPerElement = 1;
    long m_stringWidth = 1;
    uint64_t m_blockValues;
    uint64_t m_first = 0;
    uint64_t m_loaded = 0;
    bool m_bDoublesLoaded = false;
    ZorvoDSG::System::NcVariantArray m_values;
    std::vector<double> m_doubles;
};

}  // namespace ZorvoNetCDFDSG::detail
