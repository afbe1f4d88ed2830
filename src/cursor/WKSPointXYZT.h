#pragma once
// Plain geometry structures of features: a point with time, a time range and the description of
// packed coordinates.

#include <cstdint>

#include <zorvodsg/cursor/MissingValue.h>

namespace ZorvoDSG::SpaceTime {

// A vertex of a trajectory; also the set of missing values of the four coordinates.
struct WKSPointXYZT {
    double x = kMissing;
    double y = kMissing;
    double z = kMissing;
    double t = kMissing;
};

struct WKSEnvelopeT {
    double TMin = kMissing;
    double TMax = kMissing;
};

// How packed coordinates become physical values: value * scale + offset for each flagged coordinate.
struct UnpackInfo {
    enum : uint8_t { eX = 1, eY = 2, eZ = 4, eT = 8 };

    uint8_t flags = 0;
    double xScale = 1.0, xOffset = 0.0;
    double yScale = 1.0, yOffset = 0.0;
    double zScale = 1.0, zOffset = 0.0;
    double tScale = 1.0, tOffset = 0.0;
};

}  // namespace ZorvoDSG::SpaceTime
