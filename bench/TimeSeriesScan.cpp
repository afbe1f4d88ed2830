#include "TimeSeriesScan.h"

#include <string>
#include <vector>

#include "BenchSupport.h"
#include <zorvodsg/cursor/IFeatureCursor.h>
#include <zorvodsg/cursor/ProfileFeature.h>
#include <zorvodsg/featureclass/BasicFeatureClass.h>
#include <zorvodsg/featureclass/IFeatureClassObservations.h>

namespace zdsg_bench {

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
    return RunScanChild("time-series scan", path,
                        [](ZorvoDSG::IFeatureClass& featureClass) { return ScanTimeSeries(featureClass).cFeatures; });
}

}  // namespace zdsg_bench
