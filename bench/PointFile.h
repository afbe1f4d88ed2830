#pragma once
// The synthetic CF point file the point benchmarks read: a netCDF-4 file of `cPoints` features with
// double lon, lat, time and depth, a packed short (`temp`, every 50th value a fill value), a float
// with fill values (`sal`, every 20th) and a char[8] station id. Points are spread uniformly over
// the globe, so kOnePercentBox selects about 1% of them.

#include <cstdint>
#include <filesystem>
#include <limits>

#include <zorvodsg/host/Wks.h>

namespace zdsg_bench {

// Writes the file, a block of points at a time so that writing a large file needs little memory.
void WritePointFile(const std::filesystem::path& path, uint64_t cPoints);

// Every variable of the file, data and coordinates: what a bare read of it reads.
inline constexpr const char* kPointVariables[] = {"lon", "lat", "time", "z", "temp", "sal", "station"};
inline constexpr size_t kStationWidth = 8;

// Longitudes -18..18 and latitudes -9..9, a tenth of each range; no bounds in Z.
inline ZorvoDSG::Host::WKSEnvelopeZ OnePercentBox() {
    constexpr double kNoBound = std::numeric_limits<double>::quiet_NaN();
    return ZorvoDSG::Host::WKSEnvelopeZ(-18.0, -9.0, kNoBound, 18.0, 9.0, kNoBound);
}

}  // namespace zdsg_bench
