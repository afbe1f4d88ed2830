// Projections: parameter blocks and projected CRSs built with PROJ's conversion constructors.

#include <cmath>
#include <string>

#include <zorvodsg/host/gk/Gk.h>
#include <zorvodsg/host/gk/detail/GkCommon.h>

namespace ZorvoDSG::Host {

using namespace gk_detail;

namespace {

struct Values {
    double v[GK_PARAMETER_COUNT];
    double operator[](int slot) const { return v[slot]; }
};

struct Units {
    char const* linearName;
    double linearFactor;
};

PjPtr LambertConic(PJ_CONTEXT* ctx, Values const& p, Units const& u) {
    double const parallel1 = p[GK_PARM_STANDARD_PARALLEL_1];
    double const latitudeOfOrigin = p[GK_PARM_LATITUDE_OF_ORIGIN];
    if (std::isnan(p[GK_PARM_STANDARD_PARALLEL_2]) && latitudeOfOrigin == parallel1) {
        return PjPtr(proj_create_conversion_lambert_conic_conformal_1sp(
            ctx, parallel1, p[GK_PARM_CENTRAL_MERIDIAN], p[GK_PARM_SCALE_FACTOR], p[GK_PARM_FALSE_EASTING],
            p[GK_PARM_FALSE_NORTHING], kDegree, kDegreeToRadian, u.linearName, u.linearFactor));
    }
    // Without a second parallel the cone is still tangent at the first one; only the 2SP method
    // can put the origin elsewhere.
    double const parallel2 = std::isnan(p[GK_PARM_STANDARD_PARALLEL_2]) ? parallel1 : p[GK_PARM_STANDARD_PARALLEL_2];
    return PjPtr(proj_create_conversion_lambert_conic_conformal_2sp(
        ctx, latitudeOfOrigin, p[GK_PARM_CENTRAL_MERIDIAN], parallel1, parallel2, p[GK_PARM_FALSE_EASTING],
        p[GK_PARM_FALSE_NORTHING], kDegree, kDegreeToRadian, u.linearName, u.linearFactor));
}

PjPtr Conversion(PJ_CONTEXT* ctx, int code, Values const& p, Units const& u) {
    double const fe = p[GK_PARM_FALSE_EASTING];
    double const fn = p[GK_PARM_FALSE_NORTHING];
    double const lon0 = p[GK_PARM_CENTRAL_MERIDIAN];
    double const lat0 = p[GK_PARM_LATITUDE_OF_ORIGIN];
    double const sp1 = p[GK_PARM_STANDARD_PARALLEL_1];
    double const k0 = p[GK_PARM_SCALE_FACTOR];
    char const* const ang = kDegree;
    double const angFactor = kDegreeToRadian;
    char const* const lin = u.linearName;
    double const linFactor = u.linearFactor;
    switch (code) {
    case GK_PROJ_ALBERS:
        return PjPtr(proj_create_conversion_albers_equal_area(ctx, lat0, lon0, sp1, p[GK_PARM_STANDARD_PARALLEL_2],
                                                              fe, fn, ang, angFactor, lin, linFactor));
    case GK_PROJ_AZIMUTHAL_EQUIDISTANT:
        return PjPtr(proj_create_conversion_azimuthal_equidistant(ctx, lat0, lon0, fe, fn, ang, angFactor, lin,
                                                                  linFactor));
    case GK_PROJ_LAMBERT_AZIMUTHAL_EQUAL_AREA:
        return PjPtr(proj_create_conversion_lambert_azimuthal_equal_area(ctx, lat0, lon0, fe, fn, ang, angFactor,
                                                                         lin, linFactor));
    case GK_PROJ_LAMBERT_CONFORMAL_CONIC:
        return LambertConic(ctx, p, u);
    case GK_PROJ_LAMBERT_CYLINDRICAL_EQUAL_AREA:
        return PjPtr(proj_create_conversion_lambert_cylindrical_equal_area(ctx, sp1, lon0, fe, fn, ang, angFactor,
                                                                           lin, linFactor));
    case GK_PROJ_MERCATOR_SP:
        return PjPtr(
            proj_create_conversion_mercator_variant_b(ctx, sp1, lon0, fe, fn, ang, angFactor, lin, linFactor));
    case GK_PROJ_MERCATOR_SCALE:
        return PjPtr(proj_create_conversion_mercator_variant_a(ctx, 0.0, lon0, k0, fe, fn, ang, angFactor, lin,
                                                               linFactor));
    case GK_PROJ_HOTINE_OBLIQUE_MERCATOR: {
        double const azimuth = p[GK_PARM_AZIMUTH];
        double const gamma = std::isnan(p[GK_PARM_RECTIFIED_GRID_ANGLE]) ? azimuth : p[GK_PARM_RECTIFIED_GRID_ANGLE];
        return PjPtr(proj_create_conversion_hotine_oblique_mercator_variant_b(
            ctx, p[GK_PARM_LATITUDE_OF_CENTER], p[GK_PARM_LONGITUDE_OF_CENTER], azimuth, gamma, k0, fe, fn, ang,
            angFactor, lin, linFactor));
    }
    case GK_PROJ_ORTHOGRAPHIC:
        return PjPtr(proj_create_conversion_orthographic(ctx, p[GK_PARM_LATITUDE_OF_CENTER],
                                                         p[GK_PARM_LONGITUDE_OF_CENTER], fe, fn, ang, angFactor,
                                                         lin, linFactor));
    case GK_PROJ_POLAR_STEREOGRAPHIC_SP:
        return PjPtr(proj_create_conversion_polar_stereographic_variant_b(ctx, sp1, lon0, fe, fn, ang, angFactor,
                                                                          lin, linFactor));
    case GK_PROJ_POLAR_STEREOGRAPHIC_SCALE:
        if (std::fabs(lat0) != 90.0) {
            return nullptr;
        }
        return PjPtr(proj_create_conversion_polar_stereographic_variant_a(ctx, lat0, lon0, k0, fe, fn, ang,
                                                                          angFactor, lin, linFactor));
    case GK_PROJ_SINUSOIDAL:
        return PjPtr(proj_create_conversion_sinusoidal(ctx, lon0, fe, fn, ang, angFactor, lin, linFactor));
    case GK_PROJ_STEREOGRAPHIC:
        return PjPtr(proj_create_conversion_oblique_stereographic(ctx, lat0, lon0, k0, fe, fn, ang, angFactor, lin,
                                                                  linFactor));
    case GK_PROJ_TRANSVERSE_MERCATOR:
        return PjPtr(proj_create_conversion_transverse_mercator(ctx, lat0, lon0, k0, fe, fn, ang, angFactor, lin,
                                                                linFactor));
    default:
        return nullptr;
    }
}

// Slots a method may leave unset (NaN).
bool Optional(int code, int slot) {
    return (code == GK_PROJ_LAMBERT_CONFORMAL_CONIC && slot == GK_PARM_STANDARD_PARALLEL_2) ||
           (code == GK_PROJ_HOTINE_OBLIQUE_MERCATOR && slot == GK_PARM_RECTIFIED_GRID_ANGLE);
}

}  // namespace

bool gk_projection_defaults(gk_object* projection, gk_parameter** params) {
    BeginCall();
    auto* const block = dynamic_cast<GkProjection*>(projection);
    if (block == nullptr || params == nullptr) {
        Fail("not a projection");
        return false;
    }
    block->ResetDefaults();
    for (int slot = 0; slot < GK_PARAMETER_COUNT; ++slot) {
        params[slot] = block->Uses(slot) ? block->parameter(slot) : nullptr;
    }
    return true;
}

bool gk_parameter_value_set(gk_parameter* parameter, double value) {
    if (parameter == nullptr) {
        return false;
    }
    parameter->value = value;
    return true;
}

namespace gk_detail {

// The conversion of a projection with the given values (null: its own), or null with the failure set.
PjPtr ProjectionConversion(PJ_CONTEXT* ctx, GkProjection const& block, gk_parameter* const* params,
                           char const* linearName, double linearFactor) {
    Values values{};
    for (int slot = 0; slot < GK_PARAMETER_COUNT; ++slot) {
        gk_parameter const* const given = params != nullptr ? params[slot] : nullptr;
        values.v[slot] = given != nullptr ? given->value : block.value(slot);
        if (block.Uses(slot) && !std::isfinite(values.v[slot]) &&
            !(std::isnan(values.v[slot]) && Optional(block.code(), slot))) {
            Fail("projection parameter " + std::to_string(slot) + " is not a finite number");
            return nullptr;
        }
    }
    PjPtr conversion = Conversion(ctx, block.code(), values, {linearName, linearFactor});
    if (!conversion) {
        Fail("invalid parameters for projection " + std::to_string(block.code()));
    }
    return conversion;
}

}  // namespace gk_detail

gk_object* gk_projcs_new(std::string const& name, gk_object const* geogcs, gk_object const* projection,
                         gk_parameter* const* params, gk_object const* linearUnit) {
    PJ_CONTEXT* const ctx = BeginCall();
    PJ* const base = AsPj(geogcs);
    auto const* block = dynamic_cast<GkProjection const*>(projection);
    auto const* unit = dynamic_cast<GkUnit const*>(linearUnit);
    if (name.find('\0') != std::string::npos || !IsType(base, {PJ_TYPE_GEOGRAPHIC_2D_CRS}) || block == nullptr ||
        (linearUnit != nullptr && (unit == nullptr || unit->angular()))) {
        return Fail("invalid projected coordinate system arguments");
    }
    char const* const linearName = unit != nullptr ? unit->name().c_str() : kMetre;
    double const linearFactor = unit != nullptr ? unit->factor() : 1.0;
    PjPtr const conversion = ProjectionConversion(ctx, *block, params, linearName, linearFactor);
    if (!conversion) {
        return nullptr;
    }
    PjPtr const cs(proj_create_cartesian_2D_cs(ctx, PJ_CART2D_EASTING_NORTHING, linearName, linearFactor));
    PjPtr crs(proj_create_projected_crs(ctx, name.c_str(), base, conversion.get(), cs.get()));
    if (!crs) {
        return Fail("cannot create projected coordinate system '" + name + "'");
    }
    return Wrap(std::move(crs));
}

}  // namespace ZorvoDSG::Host
