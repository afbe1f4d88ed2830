#pragma once
// The value that stands for an absent coordinate: a quiet NaN with the payload 1
// (0x7FF8000000000001), so that it can be told apart from a NaN computed or read from a file.

#include <bit>
#include <cmath>
#include <cstdint>

namespace ZorvoDSG::SpaceTime {

inline constexpr uint64_t kMissingBits = 0x7FF8000000000001ULL;
inline constexpr double kMissing = std::bit_cast<double>(kMissingBits);

}  // namespace ZorvoDSG::SpaceTime
