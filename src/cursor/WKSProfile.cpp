#include <zorvodsg/cursor/WKSProfile.h>

#include <algorithm>

#include <zorvodsg/cursor/detail/FlexibleBlock.h>

namespace ZorvoDSG::SpaceTime {

WKSProfile::WKSProfile(long count_, double x_, double y_, const double* values_)
    : count(static_cast<int32_t>(std::max(count_, 0L))), x(x_), y(y_) {
    std::copy_n(values_, count, Values());
}

WKSProfile::WKSProfile(const WKSProfile& other) : count(other.count), x(other.x), y(other.y) {
    std::copy_n(other.Values(), count, Values());
}

WKSProfile& WKSProfile::operator=(const WKSProfile& other) {
    count = other.count;
    x = other.x;
    y = other.y;
    values[0] = other.values[0];
    return *this;
}

void* WKSProfile::operator new(std::size_t size, long capacity) {
    return detail::AllocateFlexible(size, capacity, sizeof(double));
}

void WKSProfile::operator delete(void* block, long) { ::operator delete(block); }

void WKSProfile::operator delete(void* block) { ::operator delete(block); }

Host::WKSEnvelopeZ WKSProfile::Extent() const {
    Host::WKSEnvelopeZ extent;
    if (count <= 0) {
        return extent;
    }
    extent.PutCoords(x, y, Values()[0], x, y, Values()[count - 1]);
    return extent;
}

void WKSProfile::Unpack(const UnpackInfo& info) {
    if (info.flags & UnpackInfo::eX) {
        x = info.xScale * x + info.xOffset;
    }
    if (info.flags & UnpackInfo::eY) {
        y = info.yScale * y + info.yOffset;
    }
    if (info.flags & UnpackInfo::eZ) {
        double* v = Values();
        for (int32_t i = 0; i < count; ++i) {
            v[i] = info.zScale * v[i] + info.zOffset;
        }
    }
}

void WKSProfile::ConvertMissingToNaN(const WKSPointXYZT& missing) {
    if (x == missing.x || y == missing.y) {
        x = kMissing;
        y = kMissing;
    }
    double* v = Values();
    int32_t kept = 0;
    for (int32_t i = 0; i < count; ++i) {
        if (v[i] == missing.z) {
            v[i] = kMissing;
        } else {
            kept = i + 1;
        }
    }
    count = kept;
}

}  // namespace ZorvoDSG::SpaceTime
