// Opening a netCDF-4 file of 500 groups. s_Open opens the file once and shares the handle among the
// group datasets; the comparison is the bare netCDF-C cost of opening the file once per dataset, which
// s_Open once paid (each open of a netCDF-4 file reads the metadata of every group: O(groups squared)).

#include <benchmark/benchmark.h>
#include <netcdf.h>

#include <cstdio>
#include <filesystem>
#include <string>


#include "BenchSupport.h"
#include <zorvodsg/netcdf/NetCDFFile.h>
#include <zorvodsg/values/NetCDFWorkspaceLog.h>

namespace {

constexpr int kGroups = 500;
constexpr int kVariablesPerGroup = 4;

using zdsg_bench::CheckNc;

void WriteGroupsFile(const std::filesystem::path& path) {
    int ncid = -1;
    CheckNc(nc_create(path.c_str(), NC_CLOBBER | NC_NETCDF4, &ncid));
    CheckNc(nc_put_att_text(ncid, NC_GLOBAL, "Conventions", 6, "CF-1.8"));
    for (int g = 0; g < kGroups; ++g) {
        char name[32];
        std::snprintf(name, sizeof name, "station%03d", g);
        int groupId = -1;
        CheckNc(nc_def_grp(ncid, name, &groupId));
        int dimId = -1;
        CheckNc(nc_def_dim(groupId, "obs", 10, &dimId));
        for (int v = 0; v < kVariablesPerGroup; ++v) {
            char varName[16];
            std::snprintf(varName, sizeof varName, "v%d", v);
            int varId = -1;
            CheckNc(nc_def_var(groupId, varName, NC_FLOAT, 1, &dimId, &varId));
            CheckNc(nc_put_att_text(groupId, varId, "units", 1, "m"));
        }
    }
    CheckNc(nc_close(ncid));
}

const std::filesystem::path& GroupsPath() {
    static const zdsg_bench::TemporaryFile s_file("open_groups", [](const std::filesystem::path& path) {
        WriteGroupsFile(path);
        zdsg_bench::InitUnits();
    });
    return s_file.Path();
}

void BM_OpenGroupsSharedHandle(benchmark::State& state) {
    const std::filesystem::path& path = GroupsPath();
    for (auto _ : state) {
        ZorvoNetCDFDSG::NetCDFWorkspaceLog log;
        auto files = ZorvoNetCDFDSG::NetCDFFile::s_Open(path, 1, nullptr, log);
        if (files.size() != kGroups + 1) {
            state.SkipWithError("wrong number of datasets");
        }
        benchmark::DoNotOptimize(files);
    }
}

// The netCDF-C cost s_Open once paid on top of its own work: the file opened once per dataset.
void BM_BareOpenPerGroup(benchmark::State& state) {
    const std::filesystem::path& path = GroupsPath();
    for (auto _ : state) {
        for (int g = 0; g <= kGroups; ++g) {
            int ncid = -1;
            CheckNc(nc_open(path.c_str(), NC_NOWRITE, &ncid));
            CheckNc(nc_close(ncid));
        }
    }
}

BENCHMARK(BM_OpenGroupsSharedHandle)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_BareOpenPerGroup)->Unit(benchmark::kMillisecond)->Iterations(1);

}  // namespace
