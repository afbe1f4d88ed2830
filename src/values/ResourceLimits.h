#pragma once
// Limits on what a file's own numbers may make the library allocate or walk. Files are opened from
// archives and the web; a declared dimension of 2^40, a string width of millions or a row size that
// claims a whole sample dimension must be refused with a message, not answered with an allocation
// that fails (or succeeds and swaps). Every limit is far above what a real DSG file needs.

#include <cstdint>
#include <filesystem>
#include <string>
#include <type_traits>

namespace ZorvoDSG::System {

// Characters of one fixed-width text value (the last dimension of a char variable).
inline constexpr uint64_t kMaxStringWidth = uint64_t{1} << 20;
// Bytes of one block of instance values read at once: wider texts are read in fewer instances a
// block, so that a search's memory stays near a megabyte a column whatever the widths. A megabyte a
// library call is far more than its fixed cost needs.
inline constexpr uint64_t kMaxBlockBytes = uint64_t{1} << 20;
// Instances of a ragged layout, whose row offsets are kept in memory (8 bytes each).
inline constexpr uint64_t kMaxRaggedInstances = 50'000'000;
// Observations of one profile, time series or trajectory, held by its feature at once.
inline constexpr uint64_t kMaxObservationsPerFeature = 100'000'000;
// Values of one observation variable read for one feature or one block (a multidimensional variable
// counts all of its values per observation).
inline constexpr uint64_t kMaxValuesPerRead = uint64_t{1} << 27;
// Groups of one netCDF-4 file, and how deeply they nest.
inline constexpr uint64_t kMaxGroups = 10'000;
inline constexpr uint64_t kMaxGroupDepth = 64;

// Throws Exception eNotDSGConformant, detail "<what> <value> exceeds the limit of <limit>".
[[noreturn]] void ThrowLimitExceeded(const std::string& what, const std::string& value, uint64_t limit,
                                     const std::filesystem::path& path);

// `what` is a text, or a function giving it: cursors check once per feature, and the text is only
// made for a file that is refused.
template <class What>
std::string DescribeLimited(const What& what) {
    if constexpr (std::is_invocable_v<const What&>) {
        return what();
    } else {
        return std::string(what);
    }
}

// Throws as ThrowLimitExceeded when `value` is above `limit`.
template <class What>
void CheckResourceLimit(uint64_t value, uint64_t limit, const What& what, const std::filesystem::path& path) {
    if (value > limit) [[unlikely]] {
        ThrowLimitExceeded(DescribeLimited(what), std::to_string(value), limit, path);
    }
}

// a * b, checked against `limit` as CheckResourceLimit does, without overflowing on the way.
template <class What>
uint64_t LimitedProduct(uint64_t a, uint64_t b, uint64_t limit, const What& what, const std::filesystem::path& path) {
    if (b != 0 && a > limit / b) [[unlikely]] {
        ThrowLimitExceeded(DescribeLimited(what), std::to_string(a) + " x " + std::to_string(b), limit, path);
    }
    return a * b;
}

}  // namespace ZorvoDSG::System
