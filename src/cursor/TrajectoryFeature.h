#pragma once
// One trajectory: its vertices with x, y, z and t and their extent, and one array of observation
// values per selected observation variable. The geometry block and every array hold at least
// `cReserved()` entries; they grow and never shrink.

#include <memory>
#include <vector>

#include <zorvodsg/cursor/Feature.h>
#include <zorvodsg/cursor/GeometryBlock.h>
#include <zorvodsg/cursor/WKSTrajectory.h>
#include <zorvodsg/featureclass/ObservationVariable.h>
#include <zorvodsg/values/NcVariantArray.h>

namespace ZorvoDSG {

class TrajectoryFeature : public Feature {
public:
    TrajectoryFeature(long reserve, const std::vector<Variable>& instanceVariables,
                      const std::vector<ObservationVariable>& observationVariables);
    TrajectoryFeature(const TrajectoryFeature&) = default;
    TrajectoryFeature& operator=(const TrajectoryFeature&) = default;

    // Grows the capacity to `n` (the geometry's contents are not kept); nothing when it suffices.
    void SetReserved(long n);
    long cReserved() const { return m_geometry.Capacity(); }

    void SetEmpty() override;
    bool bEmpty() const override { return m_geometry->count == 0; }
    Host::WKSEnvelopeZ Extent() const override { return m_geometry->envelope; }
    SpaceTime::WKSEnvelopeT TimeExtent() const { return m_geometry->TimeExtent(); }
    bool bDisjoint(const Host::WKSEnvelopeZ& envelope) const override { return m_geometry->envelope.Disjoint(envelope); }
    void ToZorvoJSON(const std::vector<Variable>& instanceVariables, ZorvoJSONWriter& writer) const override;
    void ToZorvoJSON(const JSONObjectKeys& attributeKeys, ZorvoJSONWriter& writer) const override;

    SpaceTime::WKSTrajectory& wksTrajectory() { return *m_geometry; }
    const SpaceTime::WKSTrajectory& wksTrajectory() const { return *m_geometry; }
    System::NcVariantArray& ObservationValues(long i) { return m_observationValues.at(static_cast<size_t>(i)); }
    const System::NcVariantArray& ObservationValues(long i) const {
        return m_observationValues.at(static_cast<size_t>(i));
    }
    long cObservationArrays() const { return static_cast<long>(m_observationValues.size()); }

private:
    detail::GeometryBlock<SpaceTime::WKSTrajectory> m_geometry;
    std::vector<System::NcVariantArray> m_observationValues;
};

}  // namespace ZorvoDSG
