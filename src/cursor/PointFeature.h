#pragma once
// One point observation: x, y, z and the raw value of the time coordinate (unpacked, in the time
// variable's own units; NaN without time).

#include "cursor/Feature.h"
#include "cursor/MissingValue.h"

namespace ZorvoDSG {

class PointFeature : public Feature {
public:
    explicit PointFeature(const std::vector<Variable>& instanceVariables);
    PointFeature(const PointFeature&) = default;
    PointFeature& operator=(const PointFeature&) = default;

    double Time() const { return m_time; }
    double& MutableTime() { return m_time; }
    WKSPointZ wksPointZ() const { return m_point; }
    WKSPointZ& MutablePoint() { return m_point; }

    // Instance values and the point are emptied; the time stays.
    void SetEmpty() override;
    bool bEmpty() const override { return m_point.IsEmpty(); }
    WKSEnvelopeZ Extent() const override { return WKSEnvelopeZ(m_point); }
    bool bDisjoint(const WKSEnvelopeZ& envelope) const override { return !envelope.Contains(m_point); }

private:
    WKSPointZ m_point;
    double m_time = SpaceTime::kMissing;
};

}  // namespace ZorvoDSG
