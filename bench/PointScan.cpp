#include "PointScan.h"

#include <chrono>
#include <cstdio>
#include <exception>
#include <string>
#include <vector>

#include "BenchSupport.h"
#include <zorvodsg/cursor/Feature.h>
#include <zorvodsg/cursor/IFeatureCursor.h>
#include <zorvodsg/cursor/PointFeature.h>
#include <zorvodsg/featureclass/BasicFeatureClass.h>
#include <zorvodsg/netcdf/NetCDFFile.h>
#include <zorvodsg/values/NetCDFWorkspaceLog.h>

namespace zdsg_bench {

std::shared_ptr<ZorvoDSG::IFeatureClass> OpenPointClass(const std::filesystem::path& path) {
    ZorvoNetCDFDSG::NetCDFWorkspaceLog log;
    auto files = ZorvoNetCDFDSG::NetCDFFile::s_Open(path, 1, nullptr, log);
    if (files.empty()) {
        throw std::runtime_error("no dataset in " + path.string());
    }
    return ZorvoDSG::BasicFeatureClass::s_Open(files.back(), ZorvoDSG::eFeatureUnknown, nullptr);
}

ScanResult Scan(ZorvoDSG::IFeatureClass& featureClass, const ZorvoDSG::Host::WKSEnvelopeZ& envelope) {
    std::vector<std::string> names;
    for (const ZorvoDSG::Variable& variable : featureClass.InstanceVariables()) {
        names.push_back(variable.NameWithFullGroupName());
    }
    const auto relation = envelope.IsEmpty() ? ZorvoDSG::SpaceTime::eSpatialRelationUndefined
                                             : ZorvoDSG::SpaceTime::eSpatialRelationEnvelopeIntersects;
    const ZorvoDSG::SpatialFilter filter(nullptr, relation, envelope, names, {});
    const std::shared_ptr<ZorvoDSG::IFeatureCursor> cursor = featureClass.Search(filter);
    const std::shared_ptr<ZorvoDSG::Feature> feature = cursor->CreateEmptyFeature();
    const auto& point = dynamic_cast<const ZorvoDSG::PointFeature&>(*feature);
    ScanResult result;
    while (cursor->QueryNext(feature)) {
        ++result.cFeatures;
        result.checksum += point.wksPointZ().x + point.Time();
    }
    return result;
}

int RunPointScanChild(const char* path) {
    try {
        InitUnits();
        const auto start = std::chrono::steady_clock::now();
        const std::shared_ptr<ZorvoDSG::IFeatureClass> featureClass = OpenPointClass(path);
        const uint64_t openKiB = ProcStatusKiB("VmRSS");
        const ScanResult result = Scan(*featureClass, ZorvoDSG::Host::WKSEnvelopeZ());
        const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - start;
        std::printf("%llu %llu %llu %.6f\n", static_cast<unsigned long long>(openKiB),
                    static_cast<unsigned long long>(ProcStatusKiB("VmHWM")),
                    static_cast<unsigned long long>(result.cFeatures), seconds.count());
        return 0;
    } catch (const std::exception& e) {
        std::fprintf(stderr, "point scan of %s failed: %s\n", path, e.what());
        return 1;
    }
}

}  // namespace zdsg_bench
