#include "PointScan.h"

#include <string>
#include <vector>

#include "BenchSupport.h"
#include <zorvodsg/cursor/Feature.h>
#include <zorvodsg/cursor/IFeatureCursor.h>
#include <zorvodsg/cursor/PointFeature.h>
#include <zorvodsg/featureclass/BasicFeatureClass.h>
#include <zorvodsg/featureclass/ZorvoJSONFeatureSet.h>
#include <zorvodsg/json/ZorvoJSONWriter.h>

namespace zdsg_bench {

namespace {

std::vector<std::string> InstanceVariableNames(const ZorvoDSG::IFeatureClass& featureClass) {
    std::vector<std::string> names;
    for (const ZorvoDSG::Variable& variable : featureClass.InstanceVariables()) {
        names.push_back(variable.NameWithFullGroupName());
    }
    return names;
}

}  // namespace

ScanResult Scan(ZorvoDSG::IFeatureClass& featureClass, const ZorvoDSG::Host::WKSEnvelopeZ& envelope) {
    const std::vector<std::string> names = InstanceVariableNames(featureClass);
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

uint64_t WriteFeatureObjects(ZorvoDSG::IFeatureClass& featureClass) {
    const ZorvoDSG::SpatialFilter filter(nullptr, ZorvoDSG::SpaceTime::eSpatialRelationUndefined,
                                         ZorvoDSG::Host::WKSEnvelopeZ(), InstanceVariableNames(featureClass), {});
    const std::shared_ptr<ZorvoDSG::IFeatureCursor> cursor = featureClass.Search(filter);
    const ZorvoDSG::JSONObjectKeys attributeKeys = ZorvoDSG::Feature::s_AttributeKeys(featureClass.InstanceVariables());
    ZorvoDSG::ZorvoJSONBuffer buffer;
    ZorvoDSG::ZorvoJSONWriter writer(buffer);
    uint64_t cBytes = 0;
    writer.StartArray();
    const std::shared_ptr<ZorvoDSG::Feature> feature = cursor->CreateEmptyFeature();
    while (cursor->QueryNext(feature)) {
        feature->ToZorvoJSON(attributeKeys, writer);
        if (buffer.GetSize() >= ZorvoDSG::ZorvoJSONFeatureSet::kStreamChunk) {
            cBytes += buffer.GetSize();
            buffer.Clear();
        }
    }
    writer.EndArray();
    return cBytes + buffer.GetSize();
}

int RunPointScanChild(const char* path) {
    return RunScanChild("point scan", path, [](ZorvoDSG::IFeatureClass& featureClass) {
        return Scan(featureClass, ZorvoDSG::Host::WKSEnvelopeZ()).cFeatures;
    });
}

}  // namespace zdsg_bench
