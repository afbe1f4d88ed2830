#pragma once
// The host framework's plain geometry structures.
//
// Envelope rules: intervals are closed (touching envelopes intersect, a point on the boundary is
// contained); an empty envelope (XMin NaN) is disjoint from everything and contains nothing; X and Y
// must be finite on both sides to intersect; a Z range that is NaN on either side does not restrict,
// so a 2-D filter works on 3-D features and a point with invalid Z is tested in X and Y only.

#include <limits>

namespace ZorvoDSG::Host {

struct WKSPoint {
    double x = 0.0;
    double y = 0.0;
};

struct WKSPointZ {
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;

    void SetEmpty();
    void SetInvalidZ();
    bool IsEmpty() const;
};

struct WKSEnvelope {
    double XMin = std::numeric_limits<double>::quiet_NaN();
    double YMin = std::numeric_limits<double>::quiet_NaN();
    double XMax = std::numeric_limits<double>::quiet_NaN();
    double YMax = std::numeric_limits<double>::quiet_NaN();

    bool IsEmpty() const;
    // Grows the envelope to include the point; points with a NaN coordinate are ignored.
    void AddPoint(const WKSPoint& point);
};

struct WKSEnvelopeZ {
    double XMin, YMin, ZMin, XMax, YMax, ZMax;

    WKSEnvelopeZ();
    WKSEnvelopeZ(const WKSEnvelopeZ&) = default;
    WKSEnvelopeZ& operator=(const WKSEnvelopeZ&) = default;
    explicit WKSEnvelopeZ(const WKSPointZ& point);
    WKSEnvelopeZ(double xMin, double yMin, double zMin, double xMax, double yMax, double zMax);
    WKSEnvelopeZ& operator=(const WKSEnvelope& envelope);

    void SetEmpty();
    bool IsEmpty() const;
    // Sets the six coordinates, ordering each min/max pair.
    WKSEnvelopeZ& PutCoords(double xMin, double yMin, double zMin, double xMax, double yMax, double zMax);
    bool Disjoint(const WKSEnvelopeZ& other) const;
    bool Contains(const WKSPointZ& point) const;
};

}  // namespace ZorvoDSG::Host
