#pragma once
// Element counts and byte sizes are std::size_t throughout the library: netCDF-C's own type for
// dimension lengths, starts and counts. Products and sums of them are formed with these checks, so
// that a hostile file's dimensions fail as an error instead of wrapping around into a small buffer.

#include <cstddef>

namespace ZorvoDSG::System {

// a * b into `result`; false (result unchanged) when the product does not fit.
[[nodiscard]] constexpr bool TryMultiply(std::size_t a, std::size_t b, std::size_t& result) noexcept {
    std::size_t product = 0;
    if (__builtin_mul_overflow(a, b, &product)) {
        return false;
    }
    result = product;
    return true;
}

// a * b; Exception eInternalError "size overflow" when the product does not fit.
[[nodiscard]] std::size_t CheckedMultiply(std::size_t a, std::size_t b);
// a + b; Exception eInternalError "size overflow" when the sum does not fit.
[[nodiscard]] std::size_t CheckedAdd(std::size_t a, std::size_t b);

}  // namespace ZorvoDSG::System
