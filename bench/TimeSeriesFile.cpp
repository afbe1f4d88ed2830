#include "TimeSeriesFile.h"

#include <netcdf.h>

#include <algorithm>
#include <cstdio>
#include <string>
#include <utility>
#include <vector>

#include "BenchSupport.h"

namespace zdsg_bench {

namespace {

constexpr uint64_t kStationsPerBlock = 1024;
constexpr short kTempFill = -32767;

struct Ids {
    int station, lon, lat, rowSize, time, temp, sal;
};

Ids DefineVariables(int ncid, uint64_t cStations, uint64_t cObservations) {
    int stationDim = -1;
    int obsDim = -1;
    int strlenDim = -1;
    CheckNc(nc_def_dim(ncid, "station", cStations, &stationDim));
    CheckNc(nc_def_dim(ncid, "obs", cObservations, &obsDim));
    CheckNc(nc_def_dim(ncid, "name_strlen", kTimeSeriesIdWidth, &strlenDim));
    Ids ids{};
    const int idDims[] = {stationDim, strlenDim};
    CheckNc(nc_def_var(ncid, "station", NC_CHAR, 2, idDims, &ids.station));
    PutText(ncid, ids.station, "cf_role", "timeseries_id");
    CheckNc(nc_def_var(ncid, "lon", NC_DOUBLE, 1, &stationDim, &ids.lon));
    PutText(ncid, ids.lon, "standard_name", "longitude");
    PutText(ncid, ids.lon, "units", "degrees_east");
    CheckNc(nc_def_var(ncid, "lat", NC_DOUBLE, 1, &stationDim, &ids.lat));
    PutText(ncid, ids.lat, "standard_name", "latitude");
    PutText(ncid, ids.lat, "units", "degrees_north");
    CheckNc(nc_def_var(ncid, "row_size", NC_INT, 1, &stationDim, &ids.rowSize));
    PutText(ncid, ids.rowSize, "sample_dimension", "obs");
    CheckNc(nc_def_var(ncid, "time", NC_DOUBLE, 1, &obsDim, &ids.time));
    PutText(ncid, ids.time, "standard_name", "time");
    PutText(ncid, ids.time, "units", "seconds since 2020-01-01 00:00:00");

    const std::string coordinates = "time lat lon";
    CheckNc(nc_def_var(ncid, "temp", NC_SHORT, 1, &obsDim, &ids.temp));
    PutText(ncid, ids.temp, "standard_name", "air_temperature");
    PutText(ncid, ids.temp, "units", "degC");
    const float scale = 0.01f;
    const float offset = 10.0f;
    CheckNc(nc_put_att_float(ncid, ids.temp, "scale_factor", NC_FLOAT, 1, &scale));
    CheckNc(nc_put_att_float(ncid, ids.temp, "add_offset", NC_FLOAT, 1, &offset));
    CheckNc(nc_put_att_short(ncid, ids.temp, "_FillValue", NC_SHORT, 1, &kTempFill));
    PutText(ncid, ids.temp, "coordinates", coordinates);
    CheckNc(nc_def_var(ncid, "sal", NC_FLOAT, 1, &obsDim, &ids.sal));
    PutText(ncid, ids.sal, "standard_name", "sea_water_practical_salinity");
    PutText(ncid, ids.sal, "units", "1");
    PutText(ncid, ids.sal, "coordinates", coordinates);

    PutText(ncid, NC_GLOBAL, "Conventions", "CF-1.8");
    PutText(ncid, NC_GLOBAL, "featureType", "timeSeries");
    PutText(ncid, NC_GLOBAL, "title", "ZorvoDSG time-series benchmark");
    return ids;
}

}  // namespace

void WriteTimeSeriesFile(const std::filesystem::path& path, uint64_t cStations, uint64_t cPerStation) {
    NcWrittenFile file(path, NC_NETCDF4);
    const int ncid = file.Id();
    const Ids ids = DefineVariables(ncid, cStations, cStations * cPerStation);
    CheckNc(nc_enddef(ncid));
    const size_t block = static_cast<size_t>(std::min(kStationsPerBlock, cStations));
    std::vector<char> station(block * kTimeSeriesIdWidth + 1);
    std::vector<double> lon(block), lat(block);
    std::vector<int> rowSize(block, static_cast<int>(cPerStation));
    std::vector<double> time(block * cPerStation);
    std::vector<short> temp(block * cPerStation);
    std::vector<float> sal(block * cPerStation);
    for (uint64_t first = 0; first < cStations; first += block) {
        const size_t n = static_cast<size_t>(std::min<uint64_t>(block, cStations - first));
        for (size_t i = 0; i < n; ++i) {
            const uint64_t s = first + i;
            std::snprintf(&station[i * kTimeSeriesIdWidth], kTimeSeriesIdWidth + 1, "TS%06u", static_cast<unsigned>(s % 1000000));
            lon[i] = -180.0 + 360.0 * static_cast<double>(s % 997) / 997.0;
            lat[i] = -80.0 + 160.0 * static_cast<double>(s % 499) / 499.0;
        }
        for (size_t i = 0; i < n * cPerStation; ++i) {
            const uint64_t o = first * cPerStation + i;
            time[i] = 600.0 * static_cast<double>(i % cPerStation);
            temp[i] = o % 50 == 7 ? kTempFill : static_cast<short>(o % 3000);
            sal[i] = 30.0f + static_cast<float>(o % 800) * 0.01f;
        }
        const size_t start[] = {static_cast<size_t>(first), 0};
        const size_t count[] = {n, kTimeSeriesIdWidth};
        CheckNc(nc_put_vara_text(ncid, ids.station, start, count, station.data()));
        CheckNc(nc_put_vara_double(ncid, ids.lon, start, count, lon.data()));
        CheckNc(nc_put_vara_double(ncid, ids.lat, start, count, lat.data()));
        CheckNc(nc_put_vara_int(ncid, ids.rowSize, start, count, rowSize.data()));
        const size_t obsStart[] = {static_cast<size_t>(first * cPerStation)};
        const size_t obsCount[] = {n * cPerStation};
        CheckNc(nc_put_vara_double(ncid, ids.time, obsStart, obsCount, time.data()));
        CheckNc(nc_put_vara_short(ncid, ids.temp, obsStart, obsCount, temp.data()));
        CheckNc(nc_put_vara_float(ncid, ids.sal, obsStart, obsCount, sal.data()));
    }
    file.Close();
}

}  // namespace zdsg_bench
