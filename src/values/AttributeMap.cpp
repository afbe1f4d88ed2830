#include <zorvodsg/values/AttributeMap.h>

#include <algorithm>

namespace ZorvoDSG::System {

bool AttributeMap::operator==(const AttributeMap& other) const {
    // Values of different alternatives differ; NcVariant's own == refuses to compare them.
    return std::equal(begin(), end(), other.begin(), other.end(), [](const value_type& a, const value_type& b) {
        return a.first == b.first && a.second.index() == b.second.index() && a.second == b.second;
    });
}

}  // namespace ZorvoDSG::System
