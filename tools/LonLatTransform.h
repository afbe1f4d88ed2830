#pragma once
// Moves a feature class's horizontal coordinates to longitude/latitude on WGS 84 (x = longitude,
// y = latitude), the coordinates GeoJSON requires, and finds the native rectangle that covers a
// longitude/latitude one for the search filter.

#include <string>

#include "ProjHandles.h"

namespace zdsg {

class LonLatTransform {
public:
    // Throws std::runtime_error when PROJ cannot read the WKT or find a transformation.
    explicit LonLatTransform(const std::string& wkt);

    // The CRS already is longitude/latitude on WGS 84 (either axis order): coordinates pass unchanged.
    bool bIdentity() const { return !m_operation; }

    // Native x, y to longitude, latitude in place; NaN for both when the point cannot be transformed.
    void Forward(double& x, double& y) const;

    // The native rectangle holding every point that lies in the longitude/latitude rectangle; false
    // when PROJ cannot compute it (the rectangle lies outside the projection's domain, ...).
    bool NativeBounds(double lonMin, double latMin, double lonMax, double latMax, double& xMin, double& yMin,
                      double& xMax, double& yMax) const;

private:
    ProjContextPtr m_context;
    ProjPtr m_operation;  // null for the identity
};

}  // namespace zdsg
