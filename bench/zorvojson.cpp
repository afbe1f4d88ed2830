// Writing a profile class's ZorvoJSON feature-set document against the cursor scan alone, with the
// search the document is written from (every instance variable, no observation variable).
//
// The file is a classic file of 20,000 contiguous ragged profiles of 50 levels each (1,000,000
// observations) and four instance variables, written once per run into the temporary directory; the
// document is streamed into a stream that discards it. Point feature objects are measured with the
// other point benchmarks (point_cursor.cpp).

#include <benchmark/benchmark.h>
#include <netcdf.h>

#include <cstdio>
#include <filesystem>
#include <ostream>
#include <streambuf>
#include <string>
#include <vector>

#include <unistd.h>

#include "BenchSupport.h"
#include <zorvodsg/cursor/IFeatureCursor.h>
#include <zorvodsg/featureclass/BasicFeatureClass.h>
#include <zorvodsg/featureclass/ZorvoJSONFeatureSet.h>

namespace {

constexpr size_t kProfiles = 20000;
constexpr size_t kLevels = 50;
constexpr size_t kNameChars = 16;

using zdsg_bench::CheckNc;
using zdsg_bench::PutText;

int Define(int ncid, const char* name, nc_type type, std::vector<int> dims) {
    int varId = -1;
    CheckNc(nc_def_var(ncid, name, type, static_cast<int>(dims.size()), dims.data(), &varId));
    return varId;
}

std::filesystem::path TempPath(const std::string& name) {
    return std::filesystem::temp_directory_path() / ("zdsg_bench_" + name + "_" + std::to_string(::getpid()) + ".nc");
}

std::filesystem::path WriteProfileFile() {
    const std::filesystem::path path = TempPath("profiles");
    int ncid = -1;
    CheckNc(nc_create(path.c_str(), NC_CLOBBER | NC_64BIT_OFFSET, &ncid));
    int profileDim = -1, obsDim = -1, nameDim = -1;
    CheckNc(nc_def_dim(ncid, "profile", kProfiles, &profileDim));
    CheckNc(nc_def_dim(ncid, "obs", kProfiles * kLevels, &obsDim));
    CheckNc(nc_def_dim(ncid, "name_strlen", kNameChars, &nameDim));
    const int id = Define(ncid, "profile_id", NC_INT, {profileDim});
    PutText(ncid, id, "cf_role", "profile_id");
    const int time = Define(ncid, "time", NC_DOUBLE, {profileDim});
    PutText(ncid, time, "standard_name", "time");
    PutText(ncid, time, "units", "days since 2000-01-01 00:00:00");
    const int lat = Define(ncid, "lat", NC_FLOAT, {profileDim});
    PutText(ncid, lat, "standard_name", "latitude");
    PutText(ncid, lat, "units", "degrees_north");
    const int lon = Define(ncid, "lon", NC_FLOAT, {profileDim});
    PutText(ncid, lon, "standard_name", "longitude");
    PutText(ncid, lon, "units", "degrees_east");
    const int rowSize = Define(ncid, "row_size", NC_INT, {profileDim});
    PutText(ncid, rowSize, "sample_dimension", "obs");
    const int cast = Define(ncid, "cast", NC_INT, {profileDim});
    const int station = Define(ncid, "station", NC_CHAR, {profileDim, nameDim});
    const int bottom = Define(ncid, "bottom_depth", NC_FLOAT, {profileDim});
    const int quality = Define(ncid, "quality", NC_BYTE, {profileDim});
    const int z = Define(ncid, "z", NC_FLOAT, {obsDim});
    PutText(ncid, z, "standard_name", "depth");
    PutText(ncid, z, "units", "m");
    PutText(ncid, z, "positive", "down");
    const int temp = Define(ncid, "temp", NC_FLOAT, {obsDim});
    PutText(ncid, temp, "units", "degC");
    PutText(ncid, temp, "coordinates", "time lat lon z");
    PutText(ncid, NC_GLOBAL, "featureType", "profile");
    CheckNc(nc_enddef(ncid));

    std::vector<int> ints(kProfiles);
    std::vector<double> times(kProfiles);
    std::vector<float> lats(kProfiles), lons(kProfiles), bottoms(kProfiles);
    std::vector<signed char> flags(kProfiles);
    std::vector<char> names(kProfiles * kNameChars, '\0');
    for (size_t i = 0; i < kProfiles; ++i) {
        ints[i] = static_cast<int>(i);
        times[i] = 7000.0 + static_cast<double>(i) / 24.0;
        lats[i] = -60.0f + static_cast<float>(i % 1200) * 0.1f;
        lons[i] = -180.0f + static_cast<float>(i % 3600) * 0.1f;
        bottoms[i] = 1000.0f + static_cast<float>(i % 97) * 3.7f;
        flags[i] = static_cast<signed char>(i % 4);
        std::snprintf(&names[i * kNameChars], kNameChars, "station %zu", i % 500);
    }
    CheckNc(nc_put_var_int(ncid, id, ints.data()));
    CheckNc(nc_put_var_int(ncid, cast, ints.data()));
    CheckNc(nc_put_var_double(ncid, time, times.data()));
    CheckNc(nc_put_var_float(ncid, lat, lats.data()));
    CheckNc(nc_put_var_float(ncid, lon, lons.data()));
    CheckNc(nc_put_var_float(ncid, bottom, bottoms.data()));
    CheckNc(nc_put_var_schar(ncid, quality, flags.data()));
    CheckNc(nc_put_var_text(ncid, station, names.data()));
    std::vector<int> rows(kProfiles, static_cast<int>(kLevels));
    CheckNc(nc_put_var_int(ncid, rowSize, rows.data()));
    std::vector<float> depths(kProfiles * kLevels), temps(kProfiles * kLevels);
    for (size_t i = 0; i < depths.size(); ++i) {
        depths[i] = static_cast<float>(i % kLevels) * 2.5f + 0.5f;
        temps[i] = 20.0f - static_cast<float>(i % kLevels) * 0.3f;
    }
    CheckNc(nc_put_var_float(ncid, z, depths.data()));
    CheckNc(nc_put_var_float(ncid, temp, temps.data()));
    CheckNc(nc_close(ncid));
    return path;
}

struct BenchClass {
    explicit BenchClass(std::filesystem::path file) : path(std::move(file)) {
        zdsg_bench::InitUnits();
        featureClass = zdsg_bench::OpenFeatureClass(path);
    }
    ~BenchClass() {
        featureClass.reset();
        std::error_code ignored;
        std::filesystem::remove(path, ignored);
    }
    std::filesystem::path path;
    std::shared_ptr<ZorvoDSG::BasicFeatureClass> featureClass;
};

ZorvoDSG::BasicFeatureClass& Profiles() {
    static const BenchClass s_class(WriteProfileFile());
    return *s_class.featureClass;
}

// Counts what it is given and keeps nothing.
class DiscardingBuffer : public std::streambuf {
public:
    size_t cBytes = 0;

protected:
    std::streamsize xsputn(const char*, std::streamsize n) override {
        cBytes += static_cast<size_t>(n);
        return n;
    }
    int_type overflow(int_type c) override {
        ++cBytes;
        return traits_type::not_eof(c);
    }
};

int64_t Scan(ZorvoDSG::IFeatureClass& featureClass) {
    auto cursor = featureClass.Search(ZorvoDSG::ZorvoJSONFeatureSet::s_DefaultFilter(featureClass));
    auto feature = cursor->CreateEmptyFeature();
    int64_t cFeatures = 0;
    while (cursor->QueryNext(feature)) {
        ++cFeatures;
    }
    return cFeatures;
}

void BM_ProfileCursorScan(benchmark::State& state) {
    ZorvoDSG::BasicFeatureClass& profiles = Profiles();
    int64_t cFeatures = 0;
    for (auto _ : state) {
        cFeatures += Scan(profiles);
    }
    state.SetItemsProcessed(cFeatures);
}

void BM_ProfileZorvoJSON(benchmark::State& state) {
    ZorvoDSG::BasicFeatureClass& profiles = Profiles();
    DiscardingBuffer discard;
    std::ostream out(&discard);
    for (auto _ : state) {
        ZorvoDSG::ZorvoJSONFeatureSet::s_Stream(profiles, out);
    }
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * kProfiles));
    state.SetBytesProcessed(static_cast<int64_t>(discard.cBytes));
}

BENCHMARK(BM_ProfileCursorScan)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ProfileZorvoJSON)->Unit(benchmark::kMillisecond);

}  // namespace
