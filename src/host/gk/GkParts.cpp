// Borrowed parts of CRSs and datums, and spheroid values.

#include <cmath>
#include <limits>

#include <zorvodsg/host/gk/Gk.h>
#include <zorvodsg/host/gk/detail/GkCommon.h>

namespace ZorvoDSG::Host {

using namespace gk_detail;

namespace {

using Part = gk_object::Part;

// Makes the part on first request; the owner keeps it for later calls.
template <class Make>
gk_object* CachedPart(gk_object const* owner, Part part, Make make) {
    BeginCall();
    if (owner == nullptr) {
        return Fail("no object");
    }
    std::unique_ptr<gk_object>& slot = owner->parts[static_cast<std::size_t>(part)];
    if (!slot) {
        slot.reset(make());
    }
    return slot.get();
}

// The geographic CRS of a gk object, looking through a BoundCRS; null otherwise.
PJ const* Geographic(gk_object const* object, PjPtr& holder) {
    PJ const* const pj = Unbound(AsPj(object), holder);
    return IsType(pj, {PJ_TYPE_GEOGRAPHIC_2D_CRS, PJ_TYPE_GEOGRAPHIC_3D_CRS}) ? pj : nullptr;
}

gk_object* SubCrs(gk_object const* compound, bool (*accept)(gk_object const*)) {
    PJ_CONTEXT* const ctx = Ctx();
    PjPtr holder;
    PJ const* const pj = Unbound(AsPj(compound), holder);
    if (!IsType(pj, {PJ_TYPE_COMPOUND_CRS})) {
        return Fail("not a compound coordinate system");
    }
    for (int i = 0;; ++i) {
        PjPtr sub(proj_crs_get_sub_crs(ctx, pj, i));
        if (!sub) {
            return Fail("the compound coordinate system has no such component");
        }
        GkProj candidate(std::move(sub));
        if (accept(&candidate)) {
            return candidate.Clone().release();
        }
    }
}

}  // namespace

gk_object* gk_geogcs_datum(gk_object const* geogcs) {
    return CachedPart(geogcs, Part::Datum, [geogcs]() -> gk_object* {
        PjPtr holder;
        PJ const* const pj = Geographic(geogcs, holder);
        if (pj == nullptr) {
            return Fail("not a geographic coordinate system");
        }
        PjPtr const datum(proj_crs_get_datum_forced(Ctx(), pj));
        return Wrap(GeodeticFrameOf(Ctx(), datum.get()));
    });
}

gk_object* gk_geogcs_primem(gk_object const* geogcs) {
    return CachedPart(geogcs, Part::Primem, [geogcs]() -> gk_object* {
        PjPtr holder;
        PJ const* const pj = Geographic(geogcs, holder);
        if (pj == nullptr) {
            return Fail("not a geographic coordinate system");
        }
        return Wrap(PjPtr(proj_get_prime_meridian(Ctx(), pj)));
    });
}

gk_object* gk_geogcs_unit(gk_object const* geogcs) {
    return CachedPart(geogcs, Part::Unit, [geogcs]() -> gk_object* {
        PjPtr holder;
        PJ const* const pj = Geographic(geogcs, holder);
        if (pj == nullptr) {
            return Fail("not a geographic coordinate system");
        }
        PjPtr const cs(proj_crs_get_coordinate_system(Ctx(), pj));
        double factor = 0.0;
        char const* unitName = nullptr;
        if (!cs || !proj_cs_get_axis_info(Ctx(), cs.get(), 0, nullptr, nullptr, nullptr, &factor, &unitName,
                                          nullptr, nullptr)) {
            return Fail("cannot read the angular unit");
        }
        return new GkUnit(unitName != nullptr ? unitName : kDegree, factor, true);
    });
}

gk_object* gk_datum_spheroid(gk_object const* datum) {
    return CachedPart(datum, Part::Spheroid, [datum]() -> gk_object* {
        PjPtr const frame = GeodeticFrameOf(Ctx(), AsPj(datum));
        if (!frame) {
            return Fail("not a geodetic datum");
        }
        return Wrap(PjPtr(proj_get_ellipsoid(Ctx(), frame.get())));
    });
}

gk_object* gk_hvcoordsys_coordsys(gk_object const* compound) {
    return CachedPart(compound, Part::Horizontal, [compound] { return SubCrs(compound, &gk_coordsys_p); });
}

gk_object* gk_hvcoordsys_vertcs(gk_object const* compound) {
    return CachedPart(compound, Part::Vertical, [compound] { return SubCrs(compound, &gk_vertcs_p); });
}

double gk_spheroid_axis(gk_object const* spheroid) {
    EllipsoidParameters parameters;
    if (!ReadEllipsoid(BeginCall(), AsPj(spheroid), parameters)) {
        Fail("not a spheroid");
        return std::numeric_limits<double>::quiet_NaN();
    }
    return parameters.semiMajor;
}

double gk_spheroid_flattening(gk_object const* spheroid) {
    EllipsoidParameters parameters;
    if (!ReadEllipsoid(BeginCall(), AsPj(spheroid), parameters)) {
        Fail("not a spheroid");
        return std::numeric_limits<double>::quiet_NaN();
    }
    return parameters.inverseFlattening == 0.0 ? 0.0 : 1.0 / parameters.inverseFlattening;
}

}  // namespace ZorvoDSG::Host
