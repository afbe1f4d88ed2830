#include <zorvodsg/host/Wks.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace ZorvoDSG::Host {

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

// Closed intervals; both sides must be finite.
bool IntervalsIntersect(double aMin, double aMax, double bMin, double bMax) {
    if (!std::isfinite(aMin) || !std::isfinite(aMax) || !std::isfinite(bMin) || !std::isfinite(bMax)) {
        return false;
    }
    return aMin <= bMax && bMin <= aMax;
}

// A NaN bound on either side leaves Z unrestricted.
bool ZRangesIntersect(double aMin, double aMax, double bMin, double bMax) {
    if (std::isnan(aMin) || std::isnan(aMax) || std::isnan(bMin) || std::isnan(bMax)) {
        return true;
    }
    return aMin <= bMax && bMin <= aMax;
}

void Order(double& low, double& high) {
    if (low > high) {
        std::swap(low, high);
    }
}

}  // namespace

void WKSPointZ::SetEmpty() { x = y = z = kNaN; }

void WKSPointZ::SetInvalidZ() { z = kNaN; }

bool WKSPointZ::IsEmpty() const { return std::isnan(x) || std::isnan(y); }

bool WKSEnvelope::IsEmpty() const { return std::isnan(XMin); }

void WKSEnvelope::AddPoint(const WKSPoint& point) {
    if (std::isnan(point.x) || std::isnan(point.y)) {
        return;
    }
    if (IsEmpty()) {
        XMin = XMax = point.x;
        YMin = YMax = point.y;
        return;
    }
    XMin = std::min(XMin, point.x);
    XMax = std::max(XMax, point.x);
    YMin = std::min(YMin, point.y);
    YMax = std::max(YMax, point.y);
}

WKSEnvelopeZ::WKSEnvelopeZ() { SetEmpty(); }

WKSEnvelopeZ::WKSEnvelopeZ(const WKSPointZ& point)
    : XMin(point.x), YMin(point.y), ZMin(point.z), XMax(point.x), YMax(point.y), ZMax(point.z) {}

WKSEnvelopeZ::WKSEnvelopeZ(double xMin, double yMin, double zMin, double xMax, double yMax, double zMax)
    : XMin(xMin), YMin(yMin), ZMin(zMin), XMax(xMax), YMax(yMax), ZMax(zMax) {}

WKSEnvelopeZ& WKSEnvelopeZ::operator=(const WKSEnvelope& envelope) {
    XMin = envelope.XMin;
    YMin = envelope.YMin;
    XMax = envelope.XMax;
    YMax = envelope.YMax;
    return *this;
}

void WKSEnvelopeZ::SetEmpty() { XMin = YMin = ZMin = XMax = YMax = ZMax = kNaN; }

bool WKSEnvelopeZ::IsEmpty() const { return std::isnan(XMin); }

WKSEnvelopeZ& WKSEnvelopeZ::PutCoords(double xMin, double yMin, double zMin, double xMax, double yMax,
                                      double zMax) {
    Order(xMin, xMax);
    Order(yMin, yMax);
    Order(zMin, zMax);
    XMin = xMin, YMin = yMin, ZMin = zMin, XMax = xMax, YMax = yMax, ZMax = zMax;
    return *this;
}

bool WKSEnvelopeZ::Disjoint(const WKSEnvelopeZ& other) const {
    if (IsEmpty() || other.IsEmpty()) {
        return true;
    }
    return !(IntervalsIntersect(XMin, XMax, other.XMin, other.XMax) &&
             IntervalsIntersect(YMin, YMax, other.YMin, other.YMax) &&
             ZRangesIntersect(ZMin, ZMax, other.ZMin, other.ZMax));
}

bool WKSEnvelopeZ::Contains(const WKSPointZ& point) const {
    if (IsEmpty()) {
        return false;
    }
    return IntervalsIntersect(XMin, XMax, point.x, point.x) && IntervalsIntersect(YMin, YMax, point.y, point.y) &&
           ZRangesIntersect(ZMin, ZMax, point.z, point.z);
}

}  // namespace ZorvoDSG::Host
