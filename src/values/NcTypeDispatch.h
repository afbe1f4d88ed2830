#pragma once
// Maps a netCDF type code to the C++ type of its storage, so that code over element types is written
// once as a template instead of repeating a switch over type codes in every function.

#include <netcdf.h>

#include <cstdint>
#include <string>
#include <type_traits>

namespace ZorvoDSG::System {

// Storage of NC_CHAR elements: fixed-width runs of bytes, not one C++ object per slot.
struct NcCharSlot {};

template <typename T>
struct NcTypeTag {
    using type = T;
};

// True for the storage types that hold numbers (everything but NC_CHAR and NC_STRING slots).
template <typename T>
inline constexpr bool kIsNcNumeric = !std::is_same_v<T, NcCharSlot> && !std::is_same_v<T, std::string>;

// Calls `typed(NcTypeTag<T>{})` with T the storage type of `ncType` (NcCharSlot for NC_CHAR,
// std::string for NC_STRING), or `unsupported()` for NC_USHORT and codes outside 1..12. Both must
// return the same type (or throw).
template <typename Typed, typename Unsupported>
decltype(auto) VisitNcType(int ncType, Typed&& typed, Unsupported&& unsupported) {
    switch (ncType) {
        case NC_BYTE:
            return typed(NcTypeTag<signed char>{});
        case NC_CHAR:
            return typed(NcTypeTag<NcCharSlot>{});
        case NC_SHORT:
            return typed(NcTypeTag<short>{});
        case NC_INT:
            return typed(NcTypeTag<int32_t>{});
        case NC_FLOAT:
            return typed(NcTypeTag<float>{});
        case NC_DOUBLE:
            return typed(NcTypeTag<double>{});
        case NC_UBYTE:
            return typed(NcTypeTag<unsigned char>{});
        case NC_UINT:
            return typed(NcTypeTag<uint32_t>{});
        case NC_INT64:
            return typed(NcTypeTag<int64_t>{});
        case NC_UINT64:
            return typed(NcTypeTag<uint64_t>{});
        case NC_STRING:
            return typed(NcTypeTag<std::string>{});
        default:
            return unsupported();
    }
}

// Calls `fn(T{})` with the storage type of a numeric netCDF type and returns true; returns false for
// NC_CHAR, NC_STRING, NC_USHORT and unknown codes.
template <typename Fn>
bool VisitNcNumericType(int ncType, Fn&& fn) {
    return VisitNcType(
        ncType,
        [&](auto tag) {
            using T = typename decltype(tag)::type;
            if constexpr (kIsNcNumeric<T>) {
                fn(T{});
                return true;
            } else {
                return false;
            }
        },
        [] { return false; });
}

}  // namespace ZorvoDSG::System
