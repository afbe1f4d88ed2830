#pragma once
// The point benchmarks' use of the library, as a program that wants features from one file does it:
// open the file, open its dataset as a feature class without a workspace, search with a filter
// that names every instance variable, and refill one feature per QueryNext.

#include <cstdint>
#include <filesystem>
#include <memory>

#include <zorvodsg/featureclass/IFeatureClass.h>
#include <zorvodsg/host/Wks.h>

namespace zdsg_bench {

struct ScanResult {
    uint64_t cFeatures = 0;
    double checksum = 0.0;  // of x and time, so that nothing read can be optimised away
};

// Every feature that intersects `envelope` (empty: every feature).
ScanResult Scan(ZorvoDSG::IFeatureClass& featureClass, const ZorvoDSG::Host::WKSEnvelopeZ& envelope);

// The ZorvoJSON feature object of every feature of that scan, into a buffer emptied as a stream
// would empty it; returns the bytes written.
uint64_t WriteFeatureObjects(ZorvoDSG::IFeatureClass& featureClass);

// The peak-memory measurement runs in a fresh process: this program started again with this
// option and a file. It opens and scans the file and prints "openKiB peakKiB features seconds".
inline constexpr const char* kPointScanChildOption = "--zdsg-point-scan-child";
int RunPointScanChild(const char* path);

}  // namespace zdsg_bench
