#pragma once
// The --bbox of `zdsg features`: a rectangle in the output coordinates, with an optional Z range.

#include <optional>
#include <string>

namespace zdsg {

struct BoundingBox {
    double xMin = 0.0;
    double yMin = 0.0;
    double xMax = 0.0;
    double yMax = 0.0;
    bool bHasZ = false;  // without Z bounds the box filters in X and Y only
    double zMin = 0.0;
    double zMax = 0.0;

    // Closed intervals; a NaN coordinate is outside.
    bool bContainsXY(double x, double y) const { return x >= xMin && x <= xMax && y >= yMin && y <= yMax; }
};

// "XMIN,YMIN,XMAX,YMAX" or "XMIN,YMIN,XMAX,YMAX,ZMIN,ZMAX": finite numbers, each minimum at most its
// maximum. Nothing, with `error` set, for anything else.
std::optional<BoundingBox> ParseBoundingBox(const std::string& text, std::string& error);

}  // namespace zdsg
