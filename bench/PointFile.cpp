#include "PointFile.h"

#include <netcdf.h>

#include <algorithm>
#include <cstdio>
#include <string>
#include <utility>
#include <vector>

#include "BenchSupport.h"

namespace zdsg_bench {

namespace {

constexpr uint64_t kWriteBlock = 65536;
constexpr short kTempFill = -32767;
constexpr float kSalFill = -999.0f;

// A well-mixed 64-bit value of (point, variable), so that any block can be generated on its own.
uint64_t Mix(uint64_t point, uint64_t variable) {
    uint64_t z = point * 8 + variable + 0x9E3779B97F4A7C15ull;
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ull;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBull;
    return z ^ (z >> 31);
}

// Uniform in [0, 1).
double Unit(uint64_t point, uint64_t variable) { return static_cast<double>(Mix(point, variable) >> 11) * 0x1.0p-53; }

struct Ids {
    int lon, lat, time, z, temp, sal, station;
};

Ids DefineVariables(int ncid, uint64_t cPoints) {
    int obs = -1;
    int strlen8 = -1;
    CheckNc(nc_def_dim(ncid, "obs", cPoints, &obs));
    CheckNc(nc_def_dim(ncid, "name_strlen", kStationWidth, &strlen8));
    Ids ids{};
    CheckNc(nc_def_var(ncid, "lon", NC_DOUBLE, 1, &obs, &ids.lon));
    PutText(ncid, ids.lon, "standard_name", "longitude");
    PutText(ncid, ids.lon, "units", "degrees_east");
    CheckNc(nc_def_var(ncid, "lat", NC_DOUBLE, 1, &obs, &ids.lat));
    PutText(ncid, ids.lat, "standard_name", "latitude");
    PutText(ncid, ids.lat, "units", "degrees_north");
    CheckNc(nc_def_var(ncid, "time", NC_DOUBLE, 1, &obs, &ids.time));
    PutText(ncid, ids.time, "standard_name", "time");
    PutText(ncid, ids.time, "units", "seconds since 2020-01-01 00:00:00");
    CheckNc(nc_def_var(ncid, "z", NC_DOUBLE, 1, &obs, &ids.z));
    PutText(ncid, ids.z, "standard_name", "depth");
    PutText(ncid, ids.z, "units", "m");
    PutText(ncid, ids.z, "positive", "down");

    const std::string coordinates = "time lat lon z";
    CheckNc(nc_def_var(ncid, "temp", NC_SHORT, 1, &obs, &ids.temp));
    PutText(ncid, ids.temp, "standard_name", "sea_water_temperature");
    PutText(ncid, ids.temp, "units", "degC");
    const float scale = 0.01f;
    const float offset = 15.0f;
    CheckNc(nc_put_att_float(ncid, ids.temp, "scale_factor", NC_FLOAT, 1, &scale));
    CheckNc(nc_put_att_float(ncid, ids.temp, "add_offset", NC_FLOAT, 1, &offset));
    CheckNc(nc_put_att_short(ncid, ids.temp, "_FillValue", NC_SHORT, 1, &kTempFill));
    PutText(ncid, ids.temp, "coordinates", coordinates);
    CheckNc(nc_def_var(ncid, "sal", NC_FLOAT, 1, &obs, &ids.sal));
    PutText(ncid, ids.sal, "standard_name", "sea_water_practical_salinity");
    PutText(ncid, ids.sal, "units", "1");
    CheckNc(nc_put_att_float(ncid, ids.sal, "_FillValue", NC_FLOAT, 1, &kSalFill));
    PutText(ncid, ids.sal, "coordinates", coordinates);
    const int stationDims[] = {obs, strlen8};
    CheckNc(nc_def_var(ncid, "station", NC_CHAR, 2, stationDims, &ids.station));
    PutText(ncid, ids.station, "long_name", "station id");
    PutText(ncid, ids.station, "coordinates", coordinates);

    PutText(ncid, NC_GLOBAL, "Conventions", "CF-1.8");
    PutText(ncid, NC_GLOBAL, "featureType", "point");
    PutText(ncid, NC_GLOBAL, "title", "ZorvoDSG point benchmark");
    return ids;
}

}  // namespace

void WritePointFile(const std::filesystem::path& path, uint64_t cPoints) {
    NcWrittenFile file(path, NC_NETCDF4);
    const int ncid = file.Id();
    const Ids ids = DefineVariables(ncid, cPoints);
    CheckNc(nc_enddef(ncid));
    const size_t block = static_cast<size_t>(std::min(kWriteBlock, cPoints));
    std::vector<double> lon(block), lat(block), time(block), z(block);
    std::vector<short> temp(block);
    std::vector<float> sal(block);
    std::vector<char> station(block * kStationWidth + 1);
    for (uint64_t first = 0; first < cPoints; first += block) {
        const size_t n = static_cast<size_t>(std::min<uint64_t>(block, cPoints - first));
        for (size_t i = 0; i < n; ++i) {
            const uint64_t p = first + i;
            lon[i] = -180.0 + 360.0 * Unit(p, 0);
            lat[i] = -90.0 + 180.0 * Unit(p, 1);
            time[i] = 30.0 * static_cast<double>(p);
            z[i] = 1000.0 * Unit(p, 2);
            temp[i] = p % 50 == 7 ? kTempFill : static_cast<short>(Mix(p, 3) % 3000);
            sal[i] = p % 20 == 3 ? kSalFill : static_cast<float>(30.0 + 8.0 * Unit(p, 4));
            std::snprintf(&station[i * kStationWidth], kStationWidth + 1, "ST%06u", static_cast<unsigned>(p % 1000));
        }
        const size_t start[] = {static_cast<size_t>(first), 0};
        const size_t count[] = {n, kStationWidth};
        CheckNc(nc_put_vara_double(ncid, ids.lon, start, count, lon.data()));
        CheckNc(nc_put_vara_double(ncid, ids.lat, start, count, lat.data()));
        CheckNc(nc_put_vara_double(ncid, ids.time, start, count, time.data()));
        CheckNc(nc_put_vara_double(ncid, ids.z, start, count, z.data()));
        CheckNc(nc_put_vara_short(ncid, ids.temp, start, count, temp.data()));
        CheckNc(nc_put_vara_float(ncid, ids.sal, start, count, sal.data()));
        CheckNc(nc_put_vara_text(ncid, ids.station, start, count, station.data()));
    }
    file.Close();
}

}  // namespace zdsg_bench
