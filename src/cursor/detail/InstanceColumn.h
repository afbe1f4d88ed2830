#pragma once
// The values of one instance variable, read a block of instances at a time: one hyperslab per block
// instead of one library call per value. Values equal to the fill value come back empty, except
// netCDF-4 strings and single characters, which are returned as read; packed values are unpacked
// after that comparison. A variable that does not run along the instance dimension has one value for
// every instance.

#include <cstdint>
#include <filesystem>
#include <optional>
#include <vector>

#include <zorvodsg/cursor/detail/ColumnDecoder.h>
#include <zorvodsg/cursor/detail/NcSlabReader.h>
#include <zorvodsg/cursor/detail/PackedValue.h>
#include <zorvodsg/cursor/detail/SlabShape.h>
#include <zorvodsg/netcdf/Variable.h>
#include <zorvodsg/values/NcVariantArray.h>

namespace ZorvoNetCDFDSG::detail {

// Which block of instances is loaded, and which block to read next.
class InstanceWindow {
public:
    InstanceWindow(ZorvoDSG::ICFMetadata& dataset, const ZorvoDSG::Variable& variable, long idInstanceDim,
                   uint64_t blockSize)
        : m_shape(dataset, variable, idInstanceDim), m_blockSize(s_BlockFor(blockSize, m_shape)) {}

    bool bCovers(uint64_t index) const {
        return m_loaded > 0 && (m_shape.bConstant() || (index >= m_first && index - m_first < m_loaded));
    }
    // One past the last instance the loaded block holds (every instance for a constant variable).
    uint64_t CoveredEnd() const {
        return m_shape.bConstant() ? (m_loaded > 0 ? UINT64_MAX : 0) : m_first + m_loaded;
    }
    // Points the slab at the block that starts at `index` and returns the instances it holds;
    // NC_EINVALCOORDS past the instance dimension.
    uint64_t Select(uint64_t index, const std::filesystem::path& path);
    // Marks the selected block as read.
    void Loaded(uint64_t n) { m_loaded = n; }
    // Forgets the loaded block: the next access reads it again.
    void Unload() { m_loaded = 0; }
    size_t Slot(uint64_t index) const { return m_shape.bConstant() ? 0 : static_cast<size_t>(index - m_first); }
    // The most instances a block holds.
    uint64_t Capacity() const;
    void SetBlockSize(uint64_t blockSize);
    const SlabShape& Shape() const { return m_shape; }

private:
    static uint64_t s_BlockFor(uint64_t blockSize, const SlabShape& shape);

    SlabShape m_shape;
    uint64_t m_blockSize;
    uint64_t m_first = 0;
    uint64_t m_loaded = 0;  // instances read, from m_first
};

class InstanceColumn {
public:
    InstanceColumn(ZorvoDSG::ICFMetadata& dataset, const ZorvoDSG::Variable& variable, long idInstanceDim,
                   uint64_t blockSize);

    // The value of instance `index` into `value` (unpacked when the variable is packed); reads the
    // block that starts there when it is not loaded.
    void Read(NcSlabReader& reader, uint64_t index, ZorvoDSG::System::NcVariant& value) {
        Prepare(reader, index);
        ReadLoaded(index, value);
    }
    // Loads the block that starts at `index` unless the loaded one holds it; returns CoveredEnd().
    uint64_t Prepare(NcSlabReader& reader, uint64_t index) {
        if (!m_window.bCovers(index)) {
            Load(reader, index);
        }
        return m_window.CoveredEnd();
    }
    // Read() for an index that the loaded block holds (Prepare returned an end beyond it).
    void ReadLoaded(uint64_t index, ZorvoDSG::System::NcVariant& value) const {
        const size_t slot = m_window.Slot(index);
        if (slot >= m_values.Size()) {
            ThrowBadSlot();
        }
        m_decoder.Decode(m_values, slot, m_variable, value);
    }
    ZorvoDSG::System::NcVariant Value(NcSlabReader& reader, uint64_t index) {
        ZorvoDSG::System::NcVariant value;
        Read(reader, index, value);
        return value;
    }
    const ZorvoDSG::Variable& GetVariable() const { return m_variable; }
    void SetBlockSize(uint64_t blockSize);

private:
    void Load(NcSlabReader& reader, uint64_t index);
    [[noreturn]] static void ThrowBadSlot();

    ZorvoDSG::Variable m_variable;
    InstanceWindow m_window;
    bool m_bTypeChecked = false;
    ZorvoDSG::System::NcVariantArray m_values;
    ColumnDecoder m_decoder;
};

// The same for a coordinate, converted to doubles.
class CoordinateColumn {
public:
    CoordinateColumn(ZorvoDSG::ICFMetadata& dataset, const ZorvoDSG::Variable& variable, long idInstanceDim,
                     uint64_t blockSize);

    double Value(NcSlabReader& reader, uint64_t index) {
        Prepare(reader, index);
        return ValueLoaded(index);
    }
    uint64_t Prepare(NcSlabReader& reader, uint64_t index) {
        if (!m_window.bCovers(index)) {
            Load(reader, index);
        }
        return m_window.CoveredEnd();
    }
    double ValueLoaded(uint64_t index) const { return m_values[m_window.Slot(index)]; }
    void SetBlockSize(uint64_t blockSize) { m_window.SetBlockSize(blockSize); }
    // Values equal to `missing` come back as the missing-coordinate NaN, replaced as blocks load.
    void ReplaceMissing(double missing);

private:
    void Load(NcSlabReader& reader, uint64_t index);

    ZorvoDSG::Variable m_variable;
    InstanceWindow m_window;
    std::vector<double> m_values;
    std::optional<double> m_missing;
};

}  // namespace ZorvoNetCDFDSG::detail
