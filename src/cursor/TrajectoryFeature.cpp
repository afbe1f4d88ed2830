#include <zorvodsg/cursor/TrajectoryFeature.h>

#include <algorithm>

#include <zorvodsg/cursor/detail/ObservationArrays.h>

namespace ZorvoDSG {

namespace {
std::unique_ptr<SpaceTime::WKSTrajectory> NewTrajectory(long capacity) {
    return std::unique_ptr<SpaceTime::WKSTrajectory>(new (capacity) SpaceTime::WKSTrajectory());
}

std::unique_ptr<SpaceTime::WKSTrajectory> CopyTrajectory(const SpaceTime::WKSTrajectory& source, long capacity) {
    return std::unique_ptr<SpaceTime::WKSTrajectory>(new (capacity) SpaceTime::WKSTrajectory(source));
}
}  // namespace

TrajectoryFeature::TrajectoryFeature(long reserve, const std::vector<Variable>& instanceVariables,
                               const std::vector<ObservationVariable>& observationVariables)
    : Feature(instanceVariables),
      m_reserved(std::max(reserve, 0L)),
      m_geometry(NewTrajectory(m_reserved)),
      m_observationValues(detail::MakeObservationArrays(observationVariables, m_reserved)) {}

TrajectoryFeature::TrajectoryFeature(const TrajectoryFeature& other)
    : Feature(other),
      m_reserved(other.m_reserved),
      m_geometry(CopyTrajectory(*other.m_geometry, other.m_reserved)),
      m_observationValues(other.m_observationValues) {}

TrajectoryFeature& TrajectoryFeature::operator=(const TrajectoryFeature& other) {
    if (this != &other) {
        auto geometry = CopyTrajectory(*other.m_geometry, other.m_reserved);
        auto arrays = other.m_observationValues;
        Feature::operator=(other);
        m_reserved = other.m_reserved;
        m_geometry = std::move(geometry);
        m_observationValues = std::move(arrays);
    }
    return *this;
}

void TrajectoryFeature::SetReserved(long n) {
    if (n <= m_reserved) {
        return;
    }
    m_geometry = NewTrajectory(n);
    m_reserved = n;
    detail::ReserveObservationArrays(m_observationValues, n);
}

void TrajectoryFeature::SetEmpty() {
    Feature::SetEmpty();
    detail::EmptyObservationArrays(m_observationValues);
    m_geometry->SetEmpty();
}

}  // namespace ZorvoDSG
