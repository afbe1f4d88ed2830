#include "cursor/detail/InstanceColumn.h"

#include <netcdf.h>

#include <algorithm>

#include "cursor/detail/TypedFill.h"
#include "values/Exception.h"
#include "values/NcTypeDispatch.h"

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

// Instances to read from `index` on; an index past the dimension is the library's invalid coordinates.
uint64_t BlockAt(const SlabShape& shape, uint64_t blockSize, uint64_t index, const NcSlabReader& reader) {
    if (shape.bConstant()) {
        return 1;
    }
    if (index >= shape.cInstances()) {
        throw ZorvoDSG::Exception(NC_EINVALCOORDS, L"instance beyond the instance dimension", reader.Path());
    }
    return std::min(blockSize, shape.cInstances() - index);
}

uint64_t BlockFor(const SlabShape& shape, uint64_t blockSize) {
    return shape.bConstant() ? 1 : std::clamp<uint64_t>(std::min(blockSize, shape.cInstances()), 1, blockSize);
}

}  // namespace

InstanceColumn::InstanceColumn(ZorvoDSG::ICFMetadata& dataset, const ZorvoDSG::Variable& variable,
                               long idInstanceDim, uint64_t blockSize)
    : m_variable(variable),
      m_shape(dataset, variable, idInstanceDim),
      m_blockSize(std::max<uint64_t>(blockSize, 1)),
      m_values(StorageType(variable), ComparedFill(variable, m_shape), static_cast<long>(BlockFor(m_shape, m_blockSize)),
               static_cast<long>(m_shape.StringWidth())),
      m_packing(variable) {}

void InstanceColumn::SetBlockSize(uint64_t blockSize) {
    m_blockSize = std::max<uint64_t>(blockSize, 1);
    m_values.SetReserved(static_cast<long>(BlockFor(m_shape, m_blockSize)));
    m_loaded = 0;
}

void InstanceColumn::Load(NcSlabReader& reader, uint64_t index) {
    if (!m_bTypeChecked) {
        if (m_values.elementType != m_variable.Type()) {
            throw ZorvoDSG::Exception(ZorvoDSG::eInternalError, L"NetCDFCursorImpl::GetInstanceVar1", reader.Path());
        }
        m_bTypeChecked = true;
    }
    m_loaded = 0;
    m_first = m_shape.bConstant() ? 0 : index;
    const uint64_t n = BlockAt(m_shape, m_blockSize, index, reader);
    m_shape.Select(m_first, n);
    reader.Read(m_variable, m_shape.Start(), m_shape.Count(), m_values);
    m_loaded = n;
}

CoordinateColumn::CoordinateColumn(ZorvoDSG::ICFMetadata& dataset, const ZorvoDSG::Variable& variable,
                                   long idInstanceDim, uint64_t blockSize)
    : m_variable(variable), m_shape(dataset, variable, idInstanceDim), m_blockSize(std::max<uint64_t>(blockSize, 1)) {}

void CoordinateColumn::SetBlockSize(uint64_t blockSize) {
    m_blockSize = std::max<uint64_t>(blockSize, 1);
    m_loaded = 0;
}

void CoordinateColumn::Load(NcSlabReader& reader, uint64_t index) {
    m_loaded = 0;
    m_first = m_shape.bConstant() ? 0 : index;
    const uint64_t n = BlockAt(m_shape, m_blockSize, index, reader);
    m_shape.Select(m_first, n);
    m_values.resize(static_cast<size_t>(n) * m_shape.StringWidth());
    reader.ReadDoubles(m_variable, m_shape.Start(), m_shape.Count(), m_values.data());
    m_loaded = n;
}

}  // namespace ZorvoNetCDFDSG::detail
