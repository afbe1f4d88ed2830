#pragma once
// The values of one instance variable, read a block of instances at a time: one hyperslab per block
// instead of one library call per value. Values equal to the fill value come back empty, except
// netCDF-4 strings and single characters, which are returned as read; packed values are unpacked
// after that comparison. A variable that does not run along the instance dimension has one value for
// every instance.

#include <cstdint>

#include "cursor/detail/NcSlabReader.h"
#include "cursor/detail/PackedValue.h"
#include "cursor/detail/SlabShape.h"
#include "netcdf/Variable.h"
#include "values/NcVariantArray.h"

namespace ZorvoNetCDFDSG::detail {

class InstanceColumn {
public:
    InstanceColumn(ZorvoDSG::ICFMetadata& dataset, const ZorvoDSG::Variable& variable, long idInstanceDim,
                   uint64_t blockSize);

    // The value of instance `index` into `value` (unpacked when the variable is packed); reads the
    // block that starts there when it is not loaded.
    void Read(NcSlabReader& reader, uint64_t index, ZorvoDSG::System::NcVariant& value) {
        if (!bLoaded(index)) {
            Load(reader, index);
        }
        const long i = m_shape.bConstant() ? 0 : static_cast<long>(index - m_first);
        if (m_packing.bToDouble()) {
            m_values.Get(i, m_raw);
            m_packing.UnpackToDouble(m_raw, value);
        } else {
            m_values.Get(i, value);
            m_packing.Unpack(m_variable, value);
        }
    }
    const ZorvoDSG::Variable& GetVariable() const { return m_variable; }
    void SetBlockSize(uint64_t blockSize);

private:
    bool bLoaded(uint64_t index) const {
        return m_loaded > 0 && (m_shape.bConstant() || (index >= m_first && index - m_first < m_loaded));
    }
    void Load(NcSlabReader& reader, uint64_t index);

    ZorvoDSG::Variable m_variable;
    SlabShape m_shape;
    uint64_t m_blockSize;
    uint64_t m_first = 0;
    uint64_t m_loaded = 0;  // instances in the array, from m_first
    bool m_bTypeChecked = false;
    ZorvoDSG::System::NcVariantArray m_values;
    PackedValue m_packing;
    ZorvoDSG::System::NcVariant m_raw;  // a packed value before unpacking, reused
};

// The same for a coordinate, converted to doubles.
class CoordinateColumn {
public:
    CoordinateColumn(ZorvoDSG::ICFMetadata& dataset, const ZorvoDSG::Variable& variable, long idInstanceDim,
                     uint64_t blockSize);

    double Value(NcSlabReader& reader, uint64_t index) {
        if (!bLoaded(index)) {
            Load(reader, index);
        }
        return m_values[m_shape.bConstant() ? 0 : static_cast<size_t>(index - m_first)];
    }
    void SetBlockSize(uint64_t blockSize);

private:
    bool bLoaded(uint64_t index) const {
        return m_loaded > 0 && (m_shape.bConstant() || (index >= m_first && index - m_first < m_loaded));
    }
    void Load(NcSlabReader& reader, uint64_t index);

    ZorvoDSG::Variable m_variable;
    SlabShape m_shape;
    uint64_t m_blockSize;
    uint64_t m_first = 0;
    uint64_t m_loaded = 0;
    std::vector<double> m_values;
};

}  // namespace ZorvoNetCDFDSG::detail
