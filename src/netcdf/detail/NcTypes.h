#pragma once
// The one mapping from numeric netCDF type codes to the C++ types that hold their elements (the
// NcVariant alternatives), shared by every reader of attributes and values.

#include <netcdf.h>

#include <cstdint>

namespace ZorvoNetCDFDSG::detail {

// Calls fn(T{}) with the element type of a numeric netCDF type and returns true; returns false for
// NC_CHAR, NC_STRING, NC_USHORT (no NcVariant alternative) and unknown codes.
template <typename Fn>
bool VisitNumericType(int ncType, Fn&& fn) {
    switch (ncType) {
        case NC_BYTE: fn(static_cast<signed char>(0)); return true;
        case NC_UBYTE: fn(static_cast<unsigned char>(0)); return true;
        case NC_SHORT: fn(static_cast<short>(0)); return true;
        case NC_INT: fn(static_cast<int32_t>(0)); return true;
        case NC_UINT: fn(static_cast<uint32_t>(0)); return true;
        case NC_INT64: fn(static_cast<int64_t>(0)); return true;
        case NC_UINT64: fn(static_cast<uint64_t>(0)); return true;
        case NC_FLOAT: fn(0.0f); return true;
        case NC_DOUBLE: fn(0.0); return true;
        default: return false;
    }
}

}  // namespace ZorvoNetCDFDSG::detail
