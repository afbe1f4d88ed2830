#include <zorvodsg/cursor/PointFeature.h>

namespace ZorvoDSG {

PointFeature::PointFeature(const std::vector<Variable>& instanceVariables) : Feature(instanceVariables) {
    m_point.SetEmpty();
    m_point.SetInvalidZ();
}

void PointFeature::SetEmpty() {
    Feature::SetEmpty();
    m_point.SetEmpty();
}

}  // namespace ZorvoDSG
