#include "LonLatTransform.h"

#include <cmath>
#include <limits>
#include <stdexcept>

namespace zdsg {

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

std::string ProjError(PJ_CONTEXT* context) {
    const char* text = proj_context_errno_string(context, proj_context_errno(context));
    return text != nullptr ? text : "unknown PROJ error";
}

}  // namespace

LonLatTransform::LonLatTransform(const std::string& wkt) : m_context(NewQuietProjContext()) {
    PJ_CONTEXT* context = m_context.get();
    const ProjPtr source(proj_create(context, wkt.c_str()));
    if (!source) {
        throw std::runtime_error("PROJ cannot read the class's coordinate system: " + ProjError(context));
    }
    const ProjPtr target(proj_create(context, "OGC:CRS84"));
    if (!target) {
        throw std::runtime_error("PROJ cannot create OGC:CRS84: " + ProjError(context));
    }
    // EPSG:4326 differs from OGC:CRS84 only in its axis order, which the feature's x and y do not follow.
    if (proj_is_equivalent_to_with_ctx(context, source.get(), target.get(),
                                       PJ_COMP_EQUIVALENT_EXCEPT_AXIS_ORDER_GEOGCRS) != 0) {
        return;
    }
    const ProjPtr operation(proj_create_crs_to_crs_from_pj(context, source.get(), target.get(), nullptr, nullptr));
    if (!operation) {
        throw std::runtime_error("PROJ finds no transformation to longitude/latitude: " + ProjError(context));
    }
    // x, y in the GIS order (easting, northing; longitude, latitude) whatever the CRS's axis order.
    m_operation.reset(proj_normalize_for_visualization(context, operation.get()));
    if (!m_operation) {
        throw std::runtime_error("PROJ cannot order the transformation's axes: " + ProjError(context));
    }
}

void LonLatTransform::Forward(double& x, double& y) const {
    if (!m_operation) {
        return;
    }
    PJ_COORD coordinate = proj_coord(x, y, 0.0, 0.0);
    coordinate = proj_trans(m_operation.get(), PJ_FWD, coordinate);
    if (!std::isfinite(coordinate.xy.x) || !std::isfinite(coordinate.xy.y)) {
        x = y = kNaN;
        return;
    }
    x = coordinate.xy.x;
    y = coordinate.xy.y;
}

bool LonLatTransform::NativeBounds(double lonMin, double latMin, double lonMax, double latMax, double& xMin,
                                   double& yMin, double& xMax, double& yMax) const {
    if (!m_operation) {
        xMin = lonMin;
        yMin = latMin;
        xMax = lonMax;
        yMax = latMax;
        return true;
    }
    constexpr int kDensifyPoints = 21;
    if (proj_trans_bounds(m_context.get(), m_operation.get(), PJ_INV, lonMin, latMin, lonMax, latMax, &xMin, &yMin,
                          &xMax, &yMax, kDensifyPoints) == 0 ||
        !std::isfinite(xMin) || !std::isfinite(yMin) || !std::isfinite(xMax) || !std::isfinite(yMax)) {
        return false;
    }
    // The bounds come from a densified outline; a margin keeps points near a curved edge in the
    // search, and the exact test on the transformed points decides.
    const double xMargin = (xMax - xMin) * 0.01;
    const double yMargin = (yMax - yMin) * 0.01;
    xMin -= xMargin;
    xMax += xMargin;
    yMin -= yMargin;
    yMax += yMargin;
    return true;
}

}  // namespace zdsg
