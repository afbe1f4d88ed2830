// Searching a CF point file with the point cursor, against reading the same variables with bare
// netCDF-C whole-variable reads.
//
// The file (see PointFile.h) is written once per run and size into a temporary directory that is
// removed at exit. Each search reports its time per scan, the features it delivered and `x_bare`,
// its CPU time over that of the bare read of the same file in the same run (CPU time, so that other
// programs on a shared machine do not skew the ratio). The peak resident memory of
// a full scan is measured in a fresh process per file size. The 10,000,000-point size (a 460 MB file)
// is written and measured only when ZDSG_BENCH_LARGE is set.

#include <benchmark/benchmark.h>
#include <netcdf.h>

#include <cstdlib>
#include <filesystem>
#include <map>
#include <sstream>
#include <stdexcept>
#include <vector>

#include "BenchSupport.h"
#include "PointFile.h"
#include "PointScan.h"
#include "ScratchDirectory.h"
#include "SelfProcess.h"
#include <zorvodsg/netcdf/NcFileHandle.h>

namespace {

using zdsg_bench::CheckNc;
using zdsg_bench::ProcessCpuSeconds;

constexpr int64_t kMillion = 1'000'000;

const std::filesystem::path& PointFilePath(uint64_t cPoints) {
    static const zdsg_bench::ScratchDirectory s_directory("zdsg_bench_points_");
    static std::map<uint64_t, std::filesystem::path> s_files;
    auto found = s_files.find(cPoints);
    if (found == s_files.end()) {
        zdsg_bench::InitUnits();
        const std::filesystem::path path = s_directory.Path() / ("points_" + std::to_string(cPoints) + ".nc");
        zdsg_bench::WritePointFile(path, cPoints);
        found = s_files.emplace(cPoints, path).first;
    }
    return found->second;
}

// Every variable of the file, each read whole with one typed call into a buffer of its own type.
class BareRead {
public:
    explicit BareRead(const std::filesystem::path& path, uint64_t cPoints)
        : m_file(ZorvoNetCDFDSG::NcFileHandle::s_Open(path)),
          m_doubles(4, std::vector<double>(cPoints)),
          m_shorts(cPoints),
          m_floats(cPoints),
          m_text(cPoints * zdsg_bench::kStationWidth) {
        for (const char* name : zdsg_bench::kPointVariables) {
            int id = -1;
            CheckNc(nc_inq_varid(m_file.Id(), name, &id));
            m_ids.push_back(id);
        }
    }

    void Run() {
        const int ncid = m_file.Id();
        for (size_t i = 0; i < m_doubles.size(); ++i) {
            CheckNc(nc_get_var_double(ncid, m_ids[i], m_doubles[i].data()));
        }
        CheckNc(nc_get_var_short(ncid, m_ids[4], m_shorts.data()));
        CheckNc(nc_get_var_float(ncid, m_ids[5], m_floats.data()));
        CheckNc(nc_get_var_text(ncid, m_ids[6], m_text.data()));
        benchmark::DoNotOptimize(m_doubles.front().data());
        benchmark::ClobberMemory();
    }

    size_t Bytes() const {
        return m_doubles.size() * m_doubles.front().size() * sizeof(double) + m_shorts.size() * sizeof(short) +
               m_floats.size() * sizeof(float) + m_text.size();
    }

private:
    ZorvoNetCDFDSG::NcFileHandle m_file;
    std::vector<int> m_ids;
    std::vector<std::vector<double>> m_doubles;  // lon, lat, time, z
    std::vector<short> m_shorts;
    std::vector<float> m_floats;
    std::vector<char> m_text;
};

// CPU seconds of one bare read per file size: what BM_PointBareRead measured in this run, or, when it
// was filtered out, a measurement of its own.
std::map<uint64_t, double>& BareSeconds() {
    static std::map<uint64_t, double> s_seconds;
    return s_seconds;
}

double BareSecondsFor(uint64_t cPoints) {
    auto found = BareSeconds().find(cPoints);
    if (found != BareSeconds().end()) {
        return found->second;
    }
    BareRead read(PointFilePath(cPoints), cPoints);
    read.Run();
    constexpr int kRuns = 5;
    const double start = ProcessCpuSeconds();
    for (int i = 0; i < kRuns; ++i) {
        read.Run();
    }
    return BareSeconds()[cPoints] = (ProcessCpuSeconds() - start) / kRuns;
}

void BM_PointBareRead(benchmark::State& state) {
    const auto cPoints = static_cast<uint64_t>(state.range(0));
    BareRead read(PointFilePath(cPoints), cPoints);
    const double start = ProcessCpuSeconds();
    for (auto _ : state) {
        read.Run();
    }
    BareSeconds()[cPoints] = (ProcessCpuSeconds() - start) / static_cast<double>(state.iterations());
    state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(read.Bytes()));
}

// CPU seconds of one full scan per file size, as BM_PointCursorScan measured it in this run.
std::map<uint64_t, double>& FullScanSeconds() {
    static std::map<uint64_t, double> s_seconds;
    return s_seconds;
}

void RunScan(benchmark::State& state, const ZorvoDSG::Host::WKSEnvelopeZ& envelope) {
    const auto cPoints = static_cast<uint64_t>(state.range(0));
    const double bareSeconds = BareSecondsFor(cPoints);
    const auto featureClass = zdsg_bench::OpenFeatureClass(PointFilePath(cPoints));
    zdsg_bench::ScanResult result;
    const double start = ProcessCpuSeconds();
    for (auto _ : state) {
        result = zdsg_bench::Scan(*featureClass, envelope);
        benchmark::DoNotOptimize(result);
    }
    const double seconds = (ProcessCpuSeconds() - start) / static_cast<double>(state.iterations());
    state.counters["features"] = static_cast<double>(result.cFeatures);
    state.counters["x_bare"] = seconds / bareSeconds;
    if (envelope.IsEmpty()) {
        FullScanSeconds()[cPoints] = seconds;
    }
    state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(cPoints));
}

// Every feature, every instance variable.
void BM_PointCursorScan(benchmark::State& state) { RunScan(state, ZorvoDSG::Host::WKSEnvelopeZ()); }

// The same search restricted to a box that holds about 1% of the points.
void BM_PointCursorBBoxScan(benchmark::State& state) { RunScan(state, zdsg_bench::OnePercentBox()); }

// The ZorvoJSON feature object of every point, written from the full scan; `x_scan` is its CPU time
// over that of the full scan alone (when BM_PointCursorScan ran before it in this run).
void BM_PointFeaturesZorvoJSON(benchmark::State& state) {
    const auto cPoints = static_cast<uint64_t>(state.range(0));
    const auto featureClass = zdsg_bench::OpenFeatureClass(PointFilePath(cPoints));
    uint64_t cBytes = 0;
    const double start = ProcessCpuSeconds();
    for (auto _ : state) {
        cBytes = zdsg_bench::WriteFeatureObjects(*featureClass);
    }
    const double seconds = (ProcessCpuSeconds() - start) / static_cast<double>(state.iterations());
    const auto scan = FullScanSeconds().find(cPoints);
    if (scan != FullScanSeconds().end()) {
        state.counters["x_scan"] = seconds / scan->second;
    }
    state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(cPoints));
    state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(cBytes));
}

// Resident memory of a process that opens the file and scans all of it: after opening (`open_MiB`)
// and at its peak (`peak_MiB`). Neither may grow with the file. The time is the child's open and scan.
void BM_PointScanPeakMemory(benchmark::State& state) {
    const auto cPoints = static_cast<uint64_t>(state.range(0));
    const std::string path = PointFilePath(cPoints).string();
    double openKiB = 0;
    double peakKiB = 0;
    double cFeatures = 0;
    for (auto _ : state) {
        std::istringstream output(zdsg_bench::RunSelf({zdsg_bench::kPointScanChildOption, path}));
        double seconds = 0;
        if (!(output >> openKiB >> peakKiB >> cFeatures >> seconds)) {
            throw std::runtime_error("unexpected output of the point scan process");
        }
        state.SetIterationTime(seconds);
    }
    state.counters["open_MiB"] = openKiB / 1024.0;
    state.counters["peak_MiB"] = peakKiB / 1024.0;
    state.counters["features"] = cFeatures;
}

BENCHMARK(BM_PointBareRead)->Arg(kMillion)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_PointCursorScan)->Arg(kMillion)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_PointCursorBBoxScan)->Arg(kMillion)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_PointFeaturesZorvoJSON)->Arg(kMillion)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_PointScanPeakMemory)->Arg(kMillion)->Iterations(1)->UseManualTime()->Unit(benchmark::kMillisecond);

[[maybe_unused]] const bool s_bLargeRegistered = [] {
    if (std::getenv("ZDSG_BENCH_LARGE") != nullptr) {
        benchmark::RegisterBenchmark("BM_PointScanPeakMemory", BM_PointScanPeakMemory)
            ->Arg(10 * kMillion)
            ->Iterations(1)
            ->UseManualTime()
            ->Unit(benchmark::kMillisecond);
    }
    return true;
}();

}  // namespace
