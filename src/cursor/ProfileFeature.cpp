#include <zorvodsg/cursor/ProfileFeature.h>

#include <zorvodsg/cursor/detail/ObservationArrays.h>

namespace ZorvoDSG {

ProfileFeature::ProfileFeature(long reserve, const std::vector<Variable>& instanceVariables,
                               const std::vector<ObservationVariable>& observationVariables)
    : Feature(instanceVariables),
      m_geometry(reserve),
      m_observationValues(detail::MakeObservationArrays(observationVariables, m_geometry.Capacity())) {}

void ProfileFeature::SetReserved(long n) {
    if (n <= m_geometry.Capacity()) {
        return;
    }
    m_geometry.Reserve(n);
    detail::ReserveObservationArrays(m_observationValues, n);
}

void ProfileFeature::SetEmpty() {
    Feature::SetEmpty();
    detail::EmptyObservationArrays(m_observationValues);
    m_geometry->SetEmpty();
}

}  // namespace ZorvoDSG
