#pragma once
// CF unpacking arithmetic in a value's own type, shared by whole arrays and single values.

#include <type_traits>

namespace ZorvoDSG::System::detail {

// value * scale + offset in T: floating point as it is; integers wrap around modulo their width, as
// the file's own arithmetic would, computed in unsigned arithmetic at least as wide as int (defined
// wrap-around, no promotion to signed int).
template <typename T>
T Rescale(T value, T scale, T offset) {
    if constexpr (std::is_floating_point_v<T>) {
        return value * scale + offset;
    } else {
        using W = std::conditional_t<(sizeof(T) < sizeof(unsigned)), unsigned, std::make_unsigned_t<T>>;
        return static_cast<T>(static_cast<W>(static_cast<W>(value) * static_cast<W>(scale)) +
                              static_cast<W>(offset));
    }
}

}  // namespace ZorvoDSG::System::detail
