// Scanning a contiguous ragged time-series file with the time-series cursor, against reading the
// same variables with bare netCDF-C whole-variable reads.
//
// The file (see TimeSeriesFile.h; 10,000 stations of 100 observations) is written once per run and
// size into a temporary directory that is removed at exit. The scan reports `x_bare`, its CPU time
// over that of the bare read of the same file in the same run. The peak resident memory of a full
// scan is measured in a fresh process for 10,000 and 100,000 stations: it must not grow with the
// file beyond the ragged index (8 bytes per station).

#include <benchmark/benchmark.h>
#include <netcdf.h>

#include <filesystem>
#include <map>
#include <sstream>
#include <stdexcept>
#include <vector>

#include "BenchSupport.h"
#include "ScratchDirectory.h"
#include "SelfProcess.h"
#include "TimeSeriesFile.h"
#include "TimeSeriesScan.h"
#include <zorvodsg/netcdf/NcFileHandle.h>

namespace {

using zdsg_bench::CheckNc;
using zdsg_bench::ProcessCpuSeconds;

constexpr uint64_t kPerStation = 100;
constexpr int64_t kStations = 10'000;

const std::filesystem::path& TimeSeriesFilePath(uint64_t cStations) {
    static const zdsg_bench::ScratchDirectory s_directory("zdsg_bench_timeseries_");
    static std::map<uint64_t, std::filesystem::path> s_files;
    auto found = s_files.find(cStations);
    if (found == s_files.end()) {
        zdsg_bench::InitUnits();
        const std::filesystem::path path = s_directory.Path() / ("timeseries_" + std::to_string(cStations) + ".nc");
        zdsg_bench::WriteTimeSeriesFile(path, cStations, kPerStation);
        found = s_files.emplace(cStations, path).first;
    }
    return found->second;
}

// Every variable of the file, each read whole with one typed call into a buffer of its own type.
class BareRead {
public:
    BareRead(const std::filesystem::path& path, uint64_t cStations)
        : m_file(ZorvoNetCDFDSG::NcFileHandle::s_Open(path)),
          m_ids(Id("station"), Id("lon"), Id("lat"), Id("row_size"), Id("time"), Id("temp"), Id("sal")),
          m_station(cStations * zdsg_bench::kTimeSeriesIdWidth),
          m_lon(cStations),
          m_lat(cStations),
          m_rowSize(cStations),
          m_time(cStations * kPerStation),
          m_temp(cStations * kPerStation),
          m_sal(cStations * kPerStation) {}

    void Run() {
        const int ncid = m_file.Id();
        CheckNc(nc_get_var_text(ncid, m_ids.station, m_station.data()));
        CheckNc(nc_get_var_double(ncid, m_ids.lon, m_lon.data()));
        CheckNc(nc_get_var_double(ncid, m_ids.lat, m_lat.data()));
        CheckNc(nc_get_var_int(ncid, m_ids.rowSize, m_rowSize.data()));
        CheckNc(nc_get_var_double(ncid, m_ids.time, m_time.data()));
        CheckNc(nc_get_var_short(ncid, m_ids.temp, m_temp.data()));
        CheckNc(nc_get_var_float(ncid, m_ids.sal, m_sal.data()));
        benchmark::DoNotOptimize(m_time.data());
        benchmark::ClobberMemory();
    }

    size_t Bytes() const {
        return m_station.size() + (m_lon.size() + m_lat.size() + m_time.size()) * sizeof(double) +
               m_rowSize.size() * sizeof(int) + m_temp.size() * sizeof(short) + m_sal.size() * sizeof(float);
    }

private:
    struct Ids {
        int station, lon, lat, rowSize, time, temp, sal;
    };

    int Id(const char* name) const {
        int id = -1;
        CheckNc(nc_inq_varid(m_file.Id(), name, &id));
        return id;
    }

    ZorvoNetCDFDSG::NcFileHandle m_file;
    Ids m_ids;
    std::vector<char> m_station;
    std::vector<double> m_lon;
    std::vector<double> m_lat;
    std::vector<int> m_rowSize;
    std::vector<double> m_time;
    std::vector<short> m_temp;
    std::vector<float> m_sal;
};

// CPU seconds of one bare read per file size: what BM_TimeSeriesBareRead measured in this run, or,
// when it was filtered out, a measurement of its own.
std::map<uint64_t, double>& BareSeconds() {
    static std::map<uint64_t, double> s_seconds;
    return s_seconds;
}

double BareSecondsFor(uint64_t cStations) {
    auto found = BareSeconds().find(cStations);
    if (found != BareSeconds().end()) {
        return found->second;
    }
    BareRead read(TimeSeriesFilePath(cStations), cStations);
    read.Run();
    constexpr int kRuns = 5;
    const double start = ProcessCpuSeconds();
    for (int i = 0; i < kRuns; ++i) {
        read.Run();
    }
    return BareSeconds()[cStations] = (ProcessCpuSeconds() - start) / kRuns;
}

void BM_TimeSeriesBareRead(benchmark::State& state) {
    const auto cStations = static_cast<uint64_t>(state.range(0));
    BareRead read(TimeSeriesFilePath(cStations), cStations);
    const double start = ProcessCpuSeconds();
    for (auto _ : state) {
        read.Run();
    }
    BareSeconds()[cStations] = (ProcessCpuSeconds() - start) / static_cast<double>(state.iterations());
    state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(read.Bytes()));
}

// Every station with every observation of every variable, one feature reused.
void BM_TimeSeriesCursorScan(benchmark::State& state) {
    const auto cStations = static_cast<uint64_t>(state.range(0));
    const double bareSeconds = BareSecondsFor(cStations);
    const auto featureClass = zdsg_bench::OpenFeatureClass(TimeSeriesFilePath(cStations));
    zdsg_bench::TimeSeriesScanResult result;
    const double start = ProcessCpuSeconds();
    for (auto _ : state) {
        result = zdsg_bench::ScanTimeSeries(*featureClass);
        benchmark::DoNotOptimize(result);
    }
    const double seconds = (ProcessCpuSeconds() - start) / static_cast<double>(state.iterations());
    if (result.cFeatures != cStations || result.cObservations != cStations * kPerStation) {
        state.SkipWithError("wrong feature or observation count");
    }
    state.counters["features"] = static_cast<double>(result.cFeatures);
    state.counters["x_bare"] = seconds / bareSeconds;
    state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(cStations * kPerStation));
}

// Resident memory of a process that opens the file and scans all of it: after opening (`open_MiB`)
// and at its peak (`peak_MiB`, VmHWM). The time is the child's open and scan.
void BM_TimeSeriesScanPeakMemory(benchmark::State& state) {
    const auto cStations = static_cast<uint64_t>(state.range(0));
    const std::string path = TimeSeriesFilePath(cStations).string();
    double openKiB = 0;
    double peakKiB = 0;
    double cFeatures = 0;
    for (auto _ : state) {
        std::istringstream output(zdsg_bench::RunSelf({zdsg_bench::kTimeSeriesScanChildOption, path}));
        double seconds = 0;
        if (!(output >> openKiB >> peakKiB >> cFeatures >> seconds)) {
            throw std::runtime_error("unexpected output of the time-series scan process");
        }
        state.SetIterationTime(seconds);
    }
    state.counters["open_MiB"] = openKiB / 1024.0;
    state.counters["peak_MiB"] = peakKiB / 1024.0;
    state.counters["features"] = cFeatures;
}

BENCHMARK(BM_TimeSeriesBareRead)->Arg(kStations)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_TimeSeriesCursorScan)->Arg(kStations)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_TimeSeriesScanPeakMemory)
    ->Arg(kStations)
    ->Arg(10 * kStations)
    ->Iterations(1)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

}  // namespace
