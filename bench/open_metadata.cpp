// Opening a file's metadata model against the bare netCDF-C inquiry of the same metadata.
//
// The file (netCDF-4, 2,000 variables with 5 attributes each) is written once per run into a temporary
// directory. Set ZDSG_UDUNITS2_XML to the UDUNITS-2 database so that classification runs as in use.

#include <benchmark/benchmark.h>
#include <netcdf.h>

#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>


#include "BenchSupport.h"
#include <zorvodsg/netcdf/NetCDFFile.h>
#include <zorvodsg/values/NetCDFWorkspaceLog.h>

namespace {

constexpr int kVariables = 2000;

using zdsg_bench::CheckNc;

void WriteFile(const std::filesystem::path& path) {
    int ncid = -1;
    CheckNc(nc_create(path.c_str(), NC_CLOBBER | NC_NETCDF4, &ncid));
    int dimId = -1;
    CheckNc(nc_def_dim(ncid, "obs", 10, &dimId));
    for (int i = 0; i < kVariables; ++i) {
        char name[32];
        std::snprintf(name, sizeof name, "v%04d", i);
        int varId = -1;
        CheckNc(nc_def_var(ncid, name, NC_FLOAT, 1, &dimId, &varId));
        const std::string longName = std::string("variable ") + name;
        const float range[] = {-10.0f, 10.0f};
        CheckNc(nc_put_att_text(ncid, varId, "long_name", longName.size(), longName.c_str()));
        CheckNc(nc_put_att_text(ncid, varId, "units", 1, "m"));
        CheckNc(nc_put_att_float(ncid, varId, "valid_range", NC_FLOAT, 2, range));
        CheckNc(nc_put_att_float(ncid, varId, "missing_value", NC_FLOAT, 1, range));
        CheckNc(nc_put_att_text(ncid, varId, "comment", 7, "comment"));
    }
    CheckNc(nc_close(ncid));
}

const std::filesystem::path& BenchPath() {
    static const zdsg_bench::TemporaryFile s_file("open_metadata", [](const std::filesystem::path& path) {
        WriteFile(path);
        zdsg_bench::InitUnits();
    });
    return s_file.Path();
}

void BM_NetCDFFileOpen(benchmark::State& state) {
    const std::filesystem::path& path = BenchPath();
    for (auto _ : state) {
        ZorvoNetCDFDSG::NetCDFWorkspaceLog log;
        auto files = ZorvoNetCDFDSG::NetCDFFile::s_Open(path, 1, nullptr, log);
        benchmark::DoNotOptimize(files);
    }
}

// What any reader of the same metadata has to do: every variable and every attribute value.
void BM_BareNetCDFInquiry(benchmark::State& state) {
    const std::filesystem::path& path = BenchPath();
    std::vector<char> buffer;
    for (auto _ : state) {
        int ncid = -1;
        CheckNc(nc_open(path.c_str(), NC_NOWRITE, &ncid));
        int cVariables = 0;
        CheckNc(nc_inq_nvars(ncid, &cVariables));
        for (int varId = 0; varId < cVariables; ++varId) {
            char name[NC_MAX_NAME + 1];
            nc_type type = NC_NAT;
            int cDims = 0;
            int dimIds[NC_MAX_VAR_DIMS];
            int cAttributes = 0;
            CheckNc(nc_inq_var(ncid, varId, name, &type, &cDims, dimIds, &cAttributes));
            for (int a = 0; a < cAttributes; ++a) {
                char attName[NC_MAX_NAME + 1];
                size_t length = 0;
                CheckNc(nc_inq_attname(ncid, varId, a, attName));
                CheckNc(nc_inq_att(ncid, varId, attName, &type, &length));
                buffer.resize(length * 8 + 1);
                CheckNc(nc_get_att(ncid, varId, attName, buffer.data()));
            }
            benchmark::DoNotOptimize(name);
        }
        CheckNc(nc_close(ncid));
    }
}

BENCHMARK(BM_NetCDFFileOpen)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_BareNetCDFInquiry)->Unit(benchmark::kMillisecond);

}  // namespace
