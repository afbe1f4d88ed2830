// The one entry point of the benchmark program; each benchmark lives in its own file. Measurements
// that need a process of their own run this program again with an option of theirs.
#include <benchmark/benchmark.h>

#include <string_view>

#include "PointScan.h"
#include "TimeSeriesScan.h"

int main(int argc, char** argv) {
    if (argc == 3 && std::string_view(argv[1]) == zdsg_bench::kPointScanChildOption) {
        return zdsg_bench::RunPointScanChild(argv[2]);
    }
    if (argc == 3 && std::string_view(argv[1]) == zdsg_bench::kTimeSeriesScanChildOption) {
        return zdsg_bench::RunTimeSeriesScanChild(argv[2]);
    }
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 1;
    }
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
