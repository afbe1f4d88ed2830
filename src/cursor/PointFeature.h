#pragma once
// One point observation: x, y, z and the raw value of the time coordinate (unpacked, in the time
// variable's own units; NaN without time).

#include <zorvodsg/cursor/Feature.h>
#include <zorvodsg/cursor/MissingValue.h>

namespace ZorvoDSG {

class PointFeature : public Feature {
public:
    explicit PointFeature(const std::vector<Variable>& instanceVariables);
    PointFeature(const PointFeature&) = default;
    PointFeature& operator=(const PointFeature&) = default;

    double Time() const { return m_time; }
    double& MutableTime() { return m_time; }
    Host::WKSPointZ wksPointZ() const { return m_point; }
    Host::WKSPointZ& MutablePoint() { return m_point; }

    // Instance values and the point are emptied; the time stays.
    void SetEmpty() override;
    bool bEmpty() const override { return m_point.IsEmpty(); }
    Host::WKSEnvelopeZ Extent() const override { return Host::WKSEnvelopeZ(m_point); }
    bool bDisjoint(const Host::WKSEnvelopeZ& envelope) const override { return !envelope.Contains(m_point); }
    void ToZorvoJSON(const std::vector<Variable>& instanceVariables, ZorvoJSONWriter& writer) const override;
    void ToZorvoJSON(const JSONObjectKeys& attributeKeys, ZorvoJSONWriter& writer) const override;

private:
    Host::WKSPointZ m_point;
    double m_time = SpaceTime::kMissing;
};

}  // namespace ZorvoDSG
