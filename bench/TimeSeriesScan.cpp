#include "TimeSeriesScan.h"

#include <chrono>
#include <cstdio>
#include <exception>
#include <stdexcept>
#include <string>
#include <vector>

#include "BenchSupport.h"
#include <zorvodsg/cursor/IFeatureCursor.h>
#include <zorvodsg/cursor/ProfileFeature.h>
#include <zorvodsg/featureclass/BasicFeatureClass.h>
#include <zorvodsg/featureclass/IFeatureClassObservations.h>
#include <zorvodsg/netcdf/NetCDFFile.h>
#include <zorvodsg/values/NetCDFWorkspaceLog.h>

namespace zdsg_bench {

std::shared_ptr<ZorvoDSG::IFeatureClass> OpenTimeSeriesClass(const std::filesystem::path& path) {
    ZorvoNetCDFDSG::NetCDFWorkspaceLog log;
    auto files = ZorvoNetCDFDSG::NetCDFFile::s_Open(path, 1, nullptr, log);
    if (files.empty()) {
        throw std::runtime_error("no dataset in " + path.string());
    }
    return ZorvoDSG::BasicFeatureClass::s_Open(files.back(), ZorvoDSG::eFeatureUnknown, nullptr);
}

TimeSeriesScanResult ScanTimeSeries(ZorvoDSG::IFeatureClass& featureClass) {
    std::vector<std::string> instanceNames;
    for (const ZorvoDSG::Variable& variable : featureClass.InstanceVariables()) {
        instanceNames.push_back(variable.NameWithFullGroupName());
    }
    std::vector<std::string> observationNames;
    for (const ZorvoDSG::Variable& variable :
         dynamic_cast<ZorvoDSG::IFeatureClassObservations&>(featureClass).ObservationVariables()) {
        observationNames.push_back(variable.NameWithFullGroupName());
    }
    const ZorvoDSG::SpatialFilter filter(nullptr, ZorvoDSG::SpaceTime::eSpatialRelationUndefined,
                                         ZorvoDSG::Host::WKSEnvelopeZ(), instanceNames, observationNames);
    const std::shared_ptr<ZorvoDSG::IFeatureCursor> cursor = featureClass.Search(filter);
    const std::shared_ptr<ZorvoDSG::Feature> feature = cursor->CreateEmptyFeature();
    const auto& series = dynamic_cast<const ZorvoDSG::ProfileFeature&>(*feature);
    TimeSeriesScanResult result;
    while (cursor->QueryNext(feature)) {
        const ZorvoDSG::SpaceTime::WKSProfile& profile = series.wksProfile();
        ++result.cFeatures;
        result.cObservations += static_cast<uint64_t>(profile.count);
        result.checksum += profile.x;
        if (profile.count > 0) {
            result.checksum += profile.Values()[profile.count - 1];
        }
    }
    return result;
}

int RunTimeSeriesScanChild(const char* path) {
    try {
        InitUnits();
        const auto start = std::chrono::steady_clock::now();
        const std::shared_ptr<ZorvoDSG::IFeatureClass> featureClass = OpenTimeSeriesClass(path);
        const uint64_t openKiB = ProcStatusKiB("VmRSS");
        const TimeSeriesScanResult result = ScanTimeSeries(*featureClass);
        const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - start;
        std::printf("%llu %llu %llu %.6f\n", static_cast<unsigned long long>(openKiB),
                    static_cast<unsigned long long>(ProcStatusKiB("VmHWM")),
                    static_cast<unsigned long long>(result.cFeatures), seconds.count());
        return 0;
    } catch (const std::exception& e) {
        std::fprintf(stderr, "time-series scan of %s failed: %s\n", path, e.what());
        return 1;
    }
}

}  // namespace zdsg_bench
