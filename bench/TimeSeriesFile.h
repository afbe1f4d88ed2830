#pragma once
// The synthetic CF time-series file the time-series benchmark reads: a netCDF-4 contiguous ragged
// file of `cStations` stations with `cPerStation` observations each. Per station a char[8] id
// (`station`, the timeseries_id), double `lon` and `lat` and the int `row_size`; per observation a
// double `time`, a packed short `temp` (scale and offset, every 50th value the fill value) and a
// float `sal`.

#include <cstdint>
#include <filesystem>

namespace zdsg_bench {

// Writes the file, a block of stations at a time so that writing a large file needs little memory.
void WriteTimeSeriesFile(const std::filesystem::path& path, uint64_t cStations, uint64_t cPerStation);

inline constexpr size_t kTimeSeriesIdWidth = 8;

}  // namespace zdsg_bench
