// A full scan of a contiguous ragged trajectory file against the bare whole-variable reads of the same
// data, in the same run: the cursor's overhead over what any reader has to do.
//
// The file (netCDF-4, 10,000 trajectories of 100 vertices with x, y, z, t and two observation
// variables) is written once per run into a temporary directory. Set ZDSG_UDUNITS2_XML to the
// UDUNITS-2 database, or have it at /usr/share/xml/udunits/udunits2.xml.

#include <benchmark/benchmark.h>
#include <netcdf.h>

#include <filesystem>
#include <string>
#include <vector>

#include <sys/resource.h>

#include "BenchSupport.h"
#include <zorvodsg/cursor/IFeatureCursor.h>
#include <zorvodsg/cursor/TrajectoryFeature.h>
#include <zorvodsg/featureclass/BasicFeatureClass.h>
#include <zorvodsg/featureclass/BasicTrajectoryFeatureClass.h>
#include <zorvodsg/netcdf/NetCDFFile.h>
#include <zorvodsg/values/NetCDFWorkspaceLog.h>

namespace {

constexpr size_t kTrajectories = 10000;
constexpr size_t kVertices = 100;
constexpr size_t kObservations = kTrajectories * kVertices;

using zdsg_bench::CheckNc;

int DefineVariable(int ncid, const char* name, nc_type type, int dimId, std::vector<std::pair<std::string, std::string>> texts) {
    int varId = -1;
    CheckNc(nc_def_var(ncid, name, type, 1, &dimId, &varId));
    for (const auto& [attribute, value] : texts) {
        CheckNc(nc_put_att_text(ncid, varId, attribute.c_str(), value.size(), value.c_str()));
    }
    return varId;
}

void WriteFile(const std::filesystem::path& path) {
    int ncid = -1;
    CheckNc(nc_create(path.c_str(), NC_CLOBBER | NC_NETCDF4, &ncid));
    int trajectoryDim = -1;
    int obsDim = -1;
    CheckNc(nc_def_dim(ncid, "trajectory", kTrajectories, &trajectoryDim));
    CheckNc(nc_def_dim(ncid, "obs", kObservations, &obsDim));
    const int id = DefineVariable(ncid, "trajectory", NC_INT, trajectoryDim, {{"cf_role", "trajectory_id"}});
    const int rows = DefineVariable(ncid, "rowSize", NC_INT, trajectoryDim, {{"sample_dimension", "obs"}});
    const int time = DefineVariable(ncid, "time", NC_DOUBLE, obsDim,
                                    {{"standard_name", "time"}, {"units", "seconds since 2020-01-01 00:00:00"}});
    const int lat = DefineVariable(ncid, "lat", NC_DOUBLE, obsDim, {{"standard_name", "latitude"}});
    const int lon = DefineVariable(ncid, "lon", NC_DOUBLE, obsDim, {{"standard_name", "longitude"}});
    const int z = DefineVariable(ncid, "z", NC_FLOAT, obsDim,
                                 {{"standard_name", "depth"}, {"units", "m"}, {"positive", "down"}});
    const std::pair<std::string, std::string> coordinates{"coordinates", "time lat lon z"};
    const int temp = DefineVariable(ncid, "temp", NC_FLOAT, obsDim, {coordinates});
    const int sal = DefineVariable(ncid, "sal", NC_FLOAT, obsDim, {coordinates});
    const char* title = "benchmark trajectories";
    CheckNc(nc_put_att_text(ncid, NC_GLOBAL, "featureType", 10, "trajectory"));
    CheckNc(nc_put_att_text(ncid, NC_GLOBAL, "title", std::char_traits<char>::length(title), title));
    CheckNc(nc_enddef(ncid));

    std::vector<int> ids(kTrajectories);
    std::vector<int> sizes(kTrajectories, static_cast<int>(kVertices));
    for (size_t i = 0; i < kTrajectories; ++i) {
        ids[i] = static_cast<int>(i);
    }
    CheckNc(nc_put_var_int(ncid, id, ids.data()));
    CheckNc(nc_put_var_int(ncid, rows, sizes.data()));
    std::vector<double> values(kObservations);
    std::vector<float> floats(kObservations);
    for (size_t i = 0; i < kObservations; ++i) {
        values[i] = static_cast<double>(i % kVertices) * 60.0;
    }
    CheckNc(nc_put_var_double(ncid, time, values.data()));
    for (size_t i = 0; i < kObservations; ++i) {
        values[i] = -60.0 + static_cast<double>(i) * 1e-4;
    }
    CheckNc(nc_put_var_double(ncid, lat, values.data()));
    for (size_t i = 0; i < kObservations; ++i) {
        values[i] = -170.0 + static_cast<double>(i) * 3e-4;
    }
    CheckNc(nc_put_var_double(ncid, lon, values.data()));
    for (size_t i = 0; i < kObservations; ++i) {
        floats[i] = static_cast<float>(i % kVertices);
    }
    CheckNc(nc_put_var_float(ncid, z, floats.data()));
    CheckNc(nc_put_var_float(ncid, temp, floats.data()));
    CheckNc(nc_put_var_float(ncid, sal, floats.data()));
    CheckNc(nc_close(ncid));
}

const std::filesystem::path& BenchPath() {
    static const zdsg_bench::TemporaryFile s_file("trajectory_scan", [](const std::filesystem::path& path) {
        WriteFile(path);
        zdsg_bench::InitUnits();
    });
    return s_file.Path();
}

long PeakRssKiB() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

// Every trajectory with its vertices, its id and both observation arrays, one feature reused.
void BM_TrajectoryScan(benchmark::State& state) {
    auto trajectories = zdsg_bench::OpenFeatureClass(BenchPath());
    const ZorvoDSG::SpatialFilter filter(nullptr, ZorvoDSG::SpaceTime::eSpatialRelationUndefined,
                                         ZorvoDSG::Host::WKSEnvelopeZ(), {}, {"temp", "sal"});
    const long rssBefore = PeakRssKiB();
    for (auto _ : state) {
        auto cursor = trajectories->Search(filter);
        auto feature = cursor->CreateEmptyFeature();
        size_t cVertices = 0;
        while (cursor->QueryNext(feature)) {
            cVertices += static_cast<size_t>(static_cast<ZorvoDSG::TrajectoryFeature&>(*feature).wksTrajectory().count);
        }
        if (cVertices != kObservations) {
            state.SkipWithError("wrong vertex count");
        }
        benchmark::DoNotOptimize(cVertices);
    }
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * kObservations));
    // The peak resident size a scan adds beyond the first one's buffers.
    state.counters["peak_rss_growth_KiB"] = static_cast<double>(PeakRssKiB() - rssBefore);
}

// What any reader of the same data has to do: each variable whole, coordinates as doubles.
void BM_BareWholeVariableRead(benchmark::State& state) {
    int ncid = -1;
    CheckNc(nc_open(BenchPath().c_str(), NC_NOWRITE, &ncid));
    const auto varId = [ncid](const char* name) {
        int id = -1;
        CheckNc(nc_inq_varid(ncid, name, &id));
        return id;
    };
    std::vector<int> ints(kTrajectories);
    std::vector<double> doubles(kObservations);
    std::vector<float> floats(kObservations);
    for (auto _ : state) {
        CheckNc(nc_get_var_int(ncid, varId("trajectory"), ints.data()));
        CheckNc(nc_get_var_int(ncid, varId("rowSize"), ints.data()));
        for (const char* name : {"lon", "lat", "z", "time"}) {
            CheckNc(nc_get_var_double(ncid, varId(name), doubles.data()));
            benchmark::DoNotOptimize(doubles.data());
        }
        for (const char* name : {"temp", "sal"}) {
            CheckNc(nc_get_var_float(ncid, varId(name), floats.data()));
            benchmark::DoNotOptimize(floats.data());
        }
    }
    CheckNc(nc_close(ncid));
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * kObservations));
}

BENCHMARK(BM_BareWholeVariableRead)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_TrajectoryScan)->Unit(benchmark::kMillisecond);

}  // namespace
