#include "PointScan.h"

#include <string>
#include <vector>

#include "BenchSupport.h"
#include <zorvodsg/cursor/Feature.h>
#include <zorvodsg/cursor/IFeatureCursor.h>
#include <zorvodsg/cursor/PointFeature.h>
#include <zorvodsg/featureclass/BasicFeatureClass.h>

namespace zdsg_bench {

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
    return RunScanChild("point scan", path, [](ZorvoDSG::IFeatureClass& featureClass) {
        return Scan(featureClass, ZorvoDSG::Host::WKSEnvelopeZ()).cFeatures;
    });
}

}  // namespace zdsg_bench
