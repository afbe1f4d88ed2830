#include <zorvodsg/cursor/Feature.h>

namespace ZorvoDSG {

void Feature::SetEmpty() {
    for (System::NcVariant& value : m_instanceValues) {
        value = System::NcVariant{};
    }
}

}  // namespace ZorvoDSG
