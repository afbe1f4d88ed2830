// Spheroids, datums, prime meridians, geographic and vertical CRSs made from parts.
//
// PROJ's C API builds datums, ellipsoids and prime meridians only inside a geographic CRS, so
// each part is made in a scratch CRS and taken out of it.

#include <cmath>
#include <memory>

#include <zorvodsg/host/gk/Gk.h>
#include <zorvodsg/host/gk/detail/GkCommon.h>

namespace ZorvoDSG::Host {

using namespace gk_detail;

namespace {

constexpr char const* kScratch = "unnamed";

PjPtr ScratchCrs(PJ_CONTEXT* ctx, char const* datumName, EllipsoidParameters const& ellipsoid,
                 char const* primemName, double primemLongitude) {
    PjPtr const cs = LatLonCs(ctx, kDegree, kDegreeToRadian);
    return PjPtr(proj_create_geographic_crs(ctx, kScratch, datumName, ellipsoid.name.c_str(),
                                            ellipsoid.semiMajor, ellipsoid.inverseFlattening, primemName,
                                            primemLongitude, kDegree, kDegreeToRadian, cs.get()));
}

EllipsoidParameters const kWgs84{"WGS 84", 6378137.0, 298.257223563};

bool HasNul(std::string const& text) {
    return text.find('\0') != std::string::npos;
}

}  // namespace

gk_object* gk_spheroid_new(std::string const& name, double semiMajorAxis, double flattening) {
    PJ_CONTEXT* const ctx = BeginCall();
    if (HasNul(name) || !std::isfinite(semiMajorAxis) || semiMajorAxis <= 0.0) {
        return Fail("invalid spheroid axis");
    }
    // An infinite flattening is 1 / 0: CF's inverse_flattening 0, which means a sphere.
    if (std::isnan(flattening) || (std::isfinite(flattening) && (flattening < 0.0 || flattening >= 1.0))) {
        return Fail("invalid spheroid flattening");
    }
    double const inverseFlattening = std::isinf(flattening) || flattening == 0.0 ? 0.0 : 1.0 / flattening;
    PjPtr const crs = ScratchCrs(ctx, kScratch, {name, semiMajorAxis, inverseFlattening}, "Greenwich", 0.0);
    if (!crs) {
        return Fail("cannot create spheroid '" + name + "'");
    }
    return Wrap(PjPtr(proj_get_ellipsoid(ctx, crs.get())));
}

gk_object* gk_datum_new(std::string const& name, gk_object const* spheroid) {
    PJ_CONTEXT* const ctx = BeginCall();
    EllipsoidParameters ellipsoid;
    if (HasNul(name) || !ReadEllipsoid(ctx, AsPj(spheroid), ellipsoid)) {
        return Fail("invalid datum arguments");
    }
    PjPtr const crs = ScratchCrs(ctx, name.c_str(), ellipsoid, "Greenwich", 0.0);
    if (!crs) {
        return Fail("cannot create datum '" + name + "'");
    }
    return Wrap(PjPtr(proj_crs_get_datum(ctx, crs.get())));
}

gk_object* gk_primem_new(std::string const& name, double longitude) {
    PJ_CONTEXT* const ctx = BeginCall();
    if (HasNul(name) || !std::isfinite(longitude)) {
        return Fail("invalid prime meridian arguments");
    }
    PjPtr const crs = ScratchCrs(ctx, kScratch, kWgs84, name.c_str(), longitude);
    if (!crs) {
        return Fail("cannot create prime meridian '" + name + "'");
    }
    return Wrap(PjPtr(proj_get_prime_meridian(ctx, crs.get())));
}

gk_object* gk_geogcs_new(std::string const& name, gk_object const* datum, gk_object const* primem,
                         gk_object const* angularUnit) {
    PJ_CONTEXT* const ctx = BeginCall();
    PjPtr const frame = GeodeticFrameOf(ctx, AsPj(datum));
    PJ* const meridian = AsPj(primem);
    auto const* unit = dynamic_cast<GkUnit const*>(angularUnit);
    if (HasNul(name) || !frame || (primem != nullptr && !IsType(meridian, {PJ_TYPE_PRIME_MERIDIAN})) ||
        (angularUnit != nullptr && (unit == nullptr || !unit->angular()))) {
        return Fail("invalid geographic coordinate system arguments");
    }
    PjPtr const cs = unit != nullptr ? LatLonCs(ctx, unit->name().c_str(), unit->factor())
                                     : LatLonCs(ctx, kDegree, kDegreeToRadian);
    PjPtr const framePrimem(proj_get_prime_meridian(ctx, frame.get()));
    if (meridian == nullptr || proj_is_equivalent_to(meridian, framePrimem.get(), PJ_COMP_EQUIVALENT)) {
        // Keeps the datum as it is, identifiers included.
        return Wrap(PjPtr(proj_create_geographic_crs_from_datum(ctx, name.c_str(), frame.get(), cs.get())));
    }
    PjPtr const ellipsoidObject(proj_get_ellipsoid(ctx, frame.get()));
    EllipsoidParameters ellipsoid;
    double longitude = 0.0;
    double toRadian = 0.0;
    char const* unitName = nullptr;
    if (!ReadEllipsoid(ctx, ellipsoidObject.get(), ellipsoid) ||
        !proj_prime_meridian_get_parameters(ctx, meridian, &longitude, &toRadian, &unitName)) {
        return Fail("cannot read the datum or prime meridian");
    }
    char const* const frameName = proj_get_name(frame.get());
    char const* const primemName = proj_get_name(meridian);
    return Wrap(PjPtr(proj_create_geographic_crs(
        ctx, name.c_str(), frameName != nullptr ? frameName : kScratch, ellipsoid.name.c_str(),
        ellipsoid.semiMajor, ellipsoid.inverseFlattening, primemName != nullptr ? primemName : kScratch,
        longitude, unitName != nullptr ? unitName : kDegree, toRadian, cs.get())));
}

gk_object* gk_vertcs_new(std::string const& name, gk_object* vdatum, gk_object const* parameters,
                         gk_object const* linearUnit) {
    std::unique_ptr<gk_object> const owned(vdatum);  // ours from here on, whatever happens
    PJ_CONTEXT* const ctx = BeginCall();
    PJ* const datum = AsPj(vdatum);
    auto const* unit = dynamic_cast<GkUnit const*>(linearUnit);
    if (HasNul(name) || !gk_vdatum_p(vdatum) || parameters != nullptr ||
        (linearUnit != nullptr && (unit == nullptr || unit->angular()))) {
        return Fail("invalid vertical coordinate system arguments");
    }
    char const* const datumName = proj_get_name(datum);
    return Wrap(PjPtr(proj_create_vertical_crs_ex(
        ctx, name.c_str(), datumName != nullptr ? datumName : kScratch, proj_get_id_auth_name(datum, 0),
        proj_get_id_code(datum, 0), unit != nullptr ? unit->name().c_str() : kMetre,
        unit != nullptr ? unit->factor() : 1.0, nullptr, nullptr, nullptr, nullptr, nullptr)));
}

}  // namespace ZorvoDSG::Host
