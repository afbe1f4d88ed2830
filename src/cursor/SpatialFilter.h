#pragma once
// The query given to IFeatureClass::Search: an envelope (empty: no spatial restriction), a spatial
// relation and an output spatial reference (both stored and handed back, not interpreted), and the
// group-qualified names of the instance and observation variables whose values features carry.

#include <memory>
#include <string>
#include <vector>

#include <zorvodsg/host/Wks.h>

namespace ZorvoDSG {

namespace SpaceTime {
class SpaceTimeReference;

enum eSpatialRelation : int {
    eSpatialRelationUndefined = 0,
    eSpatialRelationEnvelopeIntersects = 1,
};
}  // namespace SpaceTime

class SpatialFilter {
public:
    SpatialFilter() = default;
    SpatialFilter(std::shared_ptr<SpaceTime::SpaceTimeReference> outputReference,
                  SpaceTime::eSpatialRelation relation, Host::WKSEnvelopeZ envelope,
                  const std::vector<std::string>& instanceVariables,
                  const std::vector<std::string>& observationVariables)
        : m_outputReference(std::move(outputReference)),
          m_relation(relation),
          m_envelope(envelope),
          m_instanceVariables(instanceVariables),
          m_observationVariables(observationVariables) {}

    const Host::WKSEnvelopeZ& Envelope() const { return m_envelope; }
    SpaceTime::eSpatialRelation SpatialRelation() const { return m_relation; }
    std::shared_ptr<SpaceTime::SpaceTimeReference> OutputSpatialReference() const { return m_outputReference; }
    void SetOutputSpatialReference(const std::shared_ptr<SpaceTime::SpaceTimeReference>& reference) {
        m_outputReference = reference;
    }
    const std::vector<std::string>& InstanceVariables() const { return m_instanceVariables; }
    const std::vector<std::string>& ObservationVariables() const { return m_observationVariables; }

private:
    std::shared_ptr<SpaceTime::SpaceTimeReference> m_outputReference;
    SpaceTime::eSpatialRelation m_relation = SpaceTime::eSpatialRelationUndefined;
    Host::WKSEnvelopeZ m_envelope;
    std::vector<std::string> m_instanceVariables;
    std::vector<std::string> m_observationVariables;
};

}  // namespace ZorvoDSG
