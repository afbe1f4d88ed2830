#pragma once
// One profile or time series: its position, its run of z values (or times), the one time (or z) of
// the whole instance, and one array of observation values per selected observation variable. The
// geometry block and every array hold at least `cReserved()` entries; they grow and never shrink.

#include <memory>
#include <vector>

#include <zorvodsg/cursor/Feature.h>
#include <zorvodsg/cursor/GeometryBlock.h>
#include <zorvodsg/cursor/WKSProfile.h>
#include <zorvodsg/featureclass/ObservationVariable.h>
#include <zorvodsg/values/NcVariantArray.h>

namespace ZorvoDSG {

class ProfileFeature : public Feature {
public:
    ProfileFeature(long reserve, const std::vector<Variable>& instanceVariables,
                   const std::vector<ObservationVariable>& observationVariables);
    ProfileFeature(const ProfileFeature&) = default;
    ProfileFeature& operator=(const ProfileFeature&) = default;

    // Grows the capacity to `n` (the geometry's contents are not kept); nothing when it suffices.
    void SetReserved(long n);
    long cReserved() const { return m_geometry.Capacity(); }

    void SetEmpty() override;
    bool bEmpty() const override { return m_geometry->count == 0; }
    Host::WKSEnvelopeZ Extent() const override { return m_geometry->Extent(); }
    bool bDisjoint(const Host::WKSEnvelopeZ& envelope) const override { return Extent().Disjoint(envelope); }
    void ToZorvoJSON(const std::vector<Variable>& instanceVariables, ZorvoJSONWriter& writer) const override;
    void ToZorvoJSON(const JSONObjectKeys& attributeKeys, ZorvoJSONWriter& writer) const override;

    SpaceTime::WKSProfile& wksProfile() { return *m_geometry; }
    const SpaceTime::WKSProfile& wksProfile() const { return *m_geometry; }
    System::NcVariantArray& ObservationValues(long i) { return m_observationValues.at(static_cast<size_t>(i)); }
    const System::NcVariantArray& ObservationValues(long i) const {
        return m_observationValues.at(static_cast<size_t>(i));
    }
    long cObservationArrays() const { return static_cast<long>(m_observationValues.size()); }
    double T_or_Z() const { return m_tOrZ; }
    double& MutableT_or_Z() { return m_tOrZ; }

private:
    double m_tOrZ = SpaceTime::kMissing;
    detail::GeometryBlock<SpaceTime::WKSProfile> m_geometry;
    std::vector<System::NcVariantArray> m_observationValues;
};

}  // namespace ZorvoDSG
