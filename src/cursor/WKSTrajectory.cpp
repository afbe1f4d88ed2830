#include <zorvodsg/cursor/WKSTrajectory.h>

#include <algorithm>
#include <cmath>

#include <zorvodsg/cursor/detail/FlexibleBlock.h>

namespace ZorvoDSG::SpaceTime {

WKSTrajectory::WKSTrajectory(const WKSTrajectory& other) : envelope(other.envelope), count(other.count) {
    std::copy_n(other.Points(), std::max(count, 0), Points());
}

WKSTrajectory& WKSTrajectory::operator=(const WKSTrajectory& other) {
    envelope = other.envelope;
    count = other.count;
    points[0] = other.points[0];
    return *this;
}

void* WKSTrajectory::operator new(std::size_t size, long capacity) {
    return detail::AllocateFlexible(size, capacity, sizeof(WKSPointXYZT));
}

void WKSTrajectory::operator delete(void* block, long) { ::operator delete(block); }

void WKSTrajectory::operator delete(void* block) { ::operator delete(block); }

void WKSTrajectory::SetEmpty() {
    count = 0;
    envelope.SetEmpty();
}

WKSEnvelopeT WKSTrajectory::TimeExtent() const {
    WKSEnvelopeT extent;
    if (count <= 0) {
        return extent;
    }
    const WKSPointXYZT* p = Points();
    extent.TMin = extent.TMax = p[0].t;
    for (int32_t i = 1; i < count; ++i) {
        if (p[i].t > extent.TMax) {
            extent.TMax = p[i].t;
        } else if (p[i].t < extent.TMin) {
            extent.TMin = p[i].t;
        }
    }
    return extent;
}

void WKSTrajectory::Set(long count_, const double* x, const double* y, const double* z, const double* t,
                        const WKSPointXYZT& missing) {
    count = static_cast<int32_t>(std::max(count_, 0L));
    envelope.SetEmpty();
    if (count == 0) {
        return;
    }
    const bool bTest = !(std::isnan(missing.x) && std::isnan(missing.y) && std::isnan(missing.z) &&
                         std::isnan(missing.t));
    if (z != nullptr) {
        Set3D(x, y, z, t, missing, bTest);
    } else {
        Set2D(x, y, t, missing, bTest);
    }
}

namespace {
void MissingToNaN(double& value, double missing) {
    if (value == missing) {
        value = kMissing;
    }
}
}  // namespace

void WKSTrajectory::Set3D(const double* x, const double* y, const double* z, const double* t,
                          const WKSPointXYZT& missing, bool bTest) {
    WKSPointXYZT* p = Points();
    double lo[3] = {}, hi[3] = {};
    int32_t kept = 0;
    for (int32_t i = 0; i < count; ++i) {
        WKSPointXYZT& point = p[i];
        point = {x[i], y[i], z[i], t[i]};
        if (bTest) {
            MissingToNaN(point.x, missing.x);
            MissingToNaN(point.y, missing.y);
            MissingToNaN(point.z, missing.z);
            MissingToNaN(point.t, missing.t);
        }
        if (std::isnan(point.x) || std::isnan(point.y) || std::isnan(point.z) || std::isnan(point.t)) {
            continue;
        }
        const double c[3] = {point.x, point.y, point.z};
        for (int k = 0; k < 3; ++k) {
            if (kept == 0) {
                lo[k] = hi[k] = c[k];
            } else if (c[k] < lo[k]) {
                lo[k] = c[k];
            } else if (c[k] > hi[k]) {
                hi[k] = c[k];
            }
        }
        kept = i + 1;
    }
    count = kept;
    if (count >= 1) {
        envelope.PutCoords(lo[0], lo[1], lo[2], hi[0], hi[1], hi[2]);
    }
}

void WKSTrajectory::Set2D(const double* x, const double* y, const double* t, const WKSPointXYZT& missing,
                          bool bTest) {
    WKSPointXYZT* p = Points();
    Host::WKSEnvelope extent2D;
    int32_t kept = 0;
    for (int32_t i = 0; i < count; ++i) {
        WKSPointXYZT& point = p[i];
        point = {x[i], y[i], kMissing, t[i]};
        if (bTest) {
            MissingToNaN(point.x, missing.x);
            MissingToNaN(point.y, missing.y);
            MissingToNaN(point.t, missing.t);
        }
        if (!(std::isnan(point.x) && std::isnan(point.y) && std::isnan(point.t))) {
            kept = i + 1;
        }
        extent2D.AddPoint(Host::WKSPoint{point.x, point.y});
    }
    count = kept;
    envelope = extent2D;
}

void WKSTrajectory::Unpack(const UnpackInfo& info) {
    WKSPointXYZT* p = Points();
    const auto unpack = [&info](double& v, uint8_t bit, double scale, double offset) {
        if (info.flags & bit) {
            v = scale * v + offset;
        }
    };
    for (int32_t i = 0; i < count; ++i) {
        unpack(p[i].x, UnpackInfo::eX, info.xScale, info.xOffset);
        unpack(p[i].y, UnpackInfo::eY, info.yScale, info.yOffset);
        unpack(p[i].z, UnpackInfo::eZ, info.zScale, info.zOffset);
        unpack(p[i].t, UnpackInfo::eT, info.tScale, info.tOffset);
    }
    double xMin = envelope.XMin, xMax = envelope.XMax, yMin = envelope.YMin, yMax = envelope.YMax;
    double zMin = envelope.ZMin, zMax = envelope.ZMax;
    unpack(xMin, UnpackInfo::eX, info.xScale, info.xOffset);
    unpack(xMax, UnpackInfo::eX, info.xScale, info.xOffset);
    unpack(yMin, UnpackInfo::eY, info.yScale, info.yOffset);
    unpack(yMax, UnpackInfo::eY, info.yScale, info.yOffset);
    unpack(zMin, UnpackInfo::eZ, info.zScale, info.zOffset);
    unpack(zMax, UnpackInfo::eZ, info.zScale, info.zOffset);
    envelope.PutCoords(xMin, yMin, zMin, xMax, yMax, zMax);
}

}  // namespace ZorvoDSG::SpaceTime
