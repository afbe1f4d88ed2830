#include <zorvodsg/cursor/detail/InstanceColumn.h>

#include <netcdf.h>

#include <algorithm>
#include <stdexcept>

#include <zorvodsg/cursor/MissingValue.h>
#include <zorvodsg/cursor/detail/TypedFill.h>
#include <zorvodsg/values/Exception.h>
#include <zorvodsg/values/NcTypeDispatch.h>
#include <zorvodsg/values/ResourceLimits.h>

namespace ZorvoNetCDFDSG::detail {

using ZorvoDSG::System::NcVariant;
using ZorvoDSG::System::NcVariantArray;

namespace {

// Single characters (one per instance) and netCDF-4 strings are returned as read, fill or not.
NcVariant ComparedFill(const ZorvoDSG::Variable& variable, const SlabShape& shape) {
    const int type = variable.Type();
    if (type == NC_STRING || (type == NC_CHAR && variable.cStringChars() == 0 && !shape.bConstant())) {
        return {};
    }
    return TypedFill(variable);
}

int StorageType(const ZorvoDSG::Variable& variable) {
    const int type = variable.Type();
    const bool bStored = ZorvoDSG::System::VisitNcType(
        type, []<typename T>(ZorvoDSG::System::NcTypeTag<T>) { return true; }, [] { return false; });
    // An array cannot be made for a type without storage; reading it fails at the first value.
    return bStored ? type : NC_DOUBLE;
}

}  // namespace

uint64_t InstanceWindow::Select(uint64_t index, const std::filesystem::path& path) {
    m_loaded = 0;
    if (m_shape.bConstant()) {
        m_first = 0;
        return 1;
    }
    if (index >= m_shape.cInstances()) {
        throw ZorvoDSG::Exception(NC_EINVALCOORDS, L"instance beyond the instance dimension", path);
    }
    const uint64_t n = std::min(m_blockSize, m_shape.cInstances() - index);
    m_first = index;
    m_shape.Select(index, n);
    return n;
}

uint64_t InstanceWindow::Capacity() const {
    return m_shape.bConstant() ? 1 : std::clamp<uint64_t>(std::min(m_blockSize, m_shape.cInstances()), 1, m_blockSize);
}

uint64_t InstanceWindow::s_BlockFor(uint64_t blockSize, const SlabShape& shape) {
    // Wide texts are read in fewer instances a block, so that a block stays within its bytes.
    const uint64_t perInstance = std::max<uint64_t>(shape.StringWidth(), 8);
    return std::clamp<uint64_t>(ZorvoDSG::System::kMaxBlockBytes / perInstance, 1, std::max<uint64_t>(blockSize, 1));
}

void InstanceWindow::SetBlockSize(uint64_t blockSize) {
    m_blockSize = s_BlockFor(blockSize, m_shape);
    m_loaded = 0;
}

InstanceColumn::InstanceColumn(ZorvoDSG::ICFMetadata& dataset, const ZorvoDSG::Variable& variable,
                               long idInstanceDim, uint64_t blockSize)
    : m_variable(variable),
      m_window(dataset, variable, idInstanceDim, blockSize),
      m_values(StorageType(variable), ComparedFill(variable, m_window.Shape()), static_cast<long>(m_window.Capacity()),
               static_cast<long>(m_window.Shape().StringWidth())),
      m_decoder(m_values, PackedValue(variable)) {}

void InstanceColumn::ThrowBadSlot() {
    throw std::logic_error("instance outside the loaded block");
}

void InstanceColumn::SetBlockSize(uint64_t blockSize) {
    m_window.SetBlockSize(blockSize);
    m_values.SetReserved(static_cast<long>(m_window.Capacity()));
}

void InstanceColumn::Load(NcSlabReader& reader, uint64_t index) {
    if (!m_bTypeChecked) {
        if (m_values.ElementType() != m_variable.Type()) {
            throw ZorvoDSG::Exception(ZorvoDSG::eInternalError, L"NetCDFCursorImpl::GetInstanceVar1", reader.Path());
        }
        m_bTypeChecked = true;
    }
    const uint64_t n = m_window.Select(index, reader.Path());
    reader.Read(m_variable, m_window.Shape().Start(), m_window.Shape().Count(), m_values);
    m_window.Loaded(n);
}

CoordinateColumn::CoordinateColumn(ZorvoDSG::ICFMetadata& dataset, const ZorvoDSG::Variable& variable,
                                   long idInstanceDim, uint64_t blockSize)
    : m_variable(variable), m_window(dataset, variable, idInstanceDim, blockSize) {}

void CoordinateColumn::Load(NcSlabReader& reader, uint64_t index) {
    const uint64_t n = m_window.Select(index, reader.Path());
    m_values.resize(static_cast<size_t>(n) * m_window.Shape().StringWidth());
    reader.ReadDoubles(m_variable, m_window.Shape().Start(), m_window.Shape().Count(), m_values.data());
    if (m_missing) {
        const double missing = *m_missing;
        for (double& value : m_values) {
            value = value == missing ? ZorvoDSG::SpaceTime::kMissing : value;
        }
    }
    m_window.Loaded(n);
}

void CoordinateColumn::ReplaceMissing(double missing) {
    m_missing = missing;
    m_window.Unload();  // a loaded block was read without the replacement
}

}  // namespace ZorvoNetCDFDSG::detail
