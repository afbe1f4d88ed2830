#pragma once
// Limits on what a file's own numbers may make the library allocate or walk. Files are opened from
// archives and the web; a declared dimension of 2^40, a string width of millions or a row size that
// claims a whole sample dimension must be refused with a message, not answered with an allocation
// that fails (or succeeds and swaps). Every limit is far above what a real DSG file needs.

#include <cstdint>
#include <filesystem>
#include <string>

namespace ZorvoDSG::System {

// Characters of one fixed-width text value (the last dimension of a char variable).
inline constexpr uint64_t kMaxStringWidth = uint64_t{1} << 20;
// Bytes of one block of instance values read at once; wider texts are read in fewer instances a block.
inline constexpr uint64_t kMaxBlockBytes = uint64_t{16} << 20;
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

// Throws Exception eNotDSGConformant, detail "<what> <value> exceeds the limit of <limit>", with
// `path`, when `value` is above `limit`.
void CheckResourceLimit(uint64_t value, uint64_t limit, const std::string& what, const std::filesystem::path& path);
// a * b, checked against `limit` as CheckResourceLimit does, without overflowing on the way.
uint64_t LimitedProduct(uint64_t a, uint64_t b, uint64_t limit, const std::string& what,
                        const std::filesystem::path& path);

}  // namespace ZorvoDSG::System
