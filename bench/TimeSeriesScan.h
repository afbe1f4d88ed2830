#pragma once
// The time-series benchmark's use of the library, as a program that wants every value of a file
// does it: open the file's dataset as a feature class without a workspace, search with a filter that
// names every instance and observation variable, and refill one feature per QueryNext.

#include <cstdint>
#include <filesystem>
#include <memory>

#include <zorvodsg/featureclass/IFeatureClass.h>

namespace zdsg_bench {

struct TimeSeriesScanResult {
    uint64_t cFeatures = 0;
    uint64_t cObservations = 0;
    double checksum = 0.0;  // of x and the times, so that nothing read can be optimised away
};

TimeSeriesScanResult ScanTimeSeries(ZorvoDSG::IFeatureClass& featureClass);

// The peak-memory measurement runs in a fresh process: this program started again with this
// option and a file. It opens and scans the file and prints "openKiB peakKiB features seconds".
inline constexpr const char* kTimeSeriesScanChildOption = "--zdsg-timeseries-scan-child";
int RunTimeSeriesScanChild(const char* path);

}  // namespace zdsg_bench
