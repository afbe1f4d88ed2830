#include <zorvodsg/cursor/ProfileFeature.h>

#include <algorithm>

#include <zorvodsg/cursor/detail/ObservationArrays.h>

namespace ZorvoDSG {

namespace {
std::unique_ptr<SpaceTime::WKSProfile> NewProfile(long capacity) {
    return std::unique_ptr<SpaceTime::WKSProfile>(new (capacity) SpaceTime::WKSProfile());
}

std::unique_ptr<SpaceTime::WKSProfile> CopyProfile(const SpaceTime::WKSProfile& source, long capacity) {
    return std::unique_ptr<SpaceTime::WKSProfile>(new (capacity) SpaceTime::WKSProfile(source));
}
}  // namespace

ProfileFeature::ProfileFeature(long reserve, const std::vector<Variable>& instanceVariables,
                               const std::vector<ObservationVariable>& observationVariables)
    : Feature(instanceVariables),
      m_reserved(std::max(reserve, 0L)),
      m_geometry(NewProfile(m_reserved)),
      m_observationValues(detail::MakeObservationArrays(observationVariables, m_reserved)) {}

ProfileFeature::ProfileFeature(const ProfileFeature& other)
    : Feature(other),
      m_tOrZ(other.m_tOrZ),
      m_reserved(other.m_reserved),
      m_geometry(CopyProfile(*other.m_geometry, other.m_reserved)),
      m_observationValues(other.m_observationValues) {}

ProfileFeature& ProfileFeature::operator=(const ProfileFeature& other) {
    if (this != &other) {
        auto geometry = CopyProfile(*other.m_geometry, other.m_reserved);
        auto arrays = other.m_observationValues;
        Feature::operator=(other);
        m_tOrZ = other.m_tOrZ;
        m_reserved = other.m_reserved;
        m_geometry = std::move(geometry);
        m_observationValues = std::move(arrays);
    }
    return *this;
}

void ProfileFeature::SetReserved(long n) {
    if (n <= m_reserved) {
        return;
    }
    m_geometry = NewProfile(n);
    m_reserved = n;
    detail::ReserveObservationArrays(m_observationValues, n);
}

void ProfileFeature::SetEmpty() {
    Feature::SetEmpty();
    detail::EmptyObservationArrays(m_observationValues);
    m_geometry->SetEmpty();
}

}  // namespace ZorvoDSG
