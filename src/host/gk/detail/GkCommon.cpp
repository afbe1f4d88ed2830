#include <zorvodsg/host/gk/detail/GkCommon.h>

#include <zorvodsg/host/gk/detail/GkErrors.h>

namespace ZorvoDSG::Host::gk_detail {

PJ_CONTEXT* BeginCall() {
    ProjContext& context = *ProjContext::Current();
    context.TakeLog();
    return context.get();
}

std::nullptr_t Fail(std::string what) {
    SetLastError(std::move(what));
    return nullptr;
}

bool IsType(PJ const* pj, std::initializer_list<PJ_TYPE> types) noexcept {
    if (pj == nullptr) {
        return false;
    }
    PJ_TYPE const type = proj_get_type(pj);
    for (PJ_TYPE t : types) {
        if (t == type) {
            return true;
        }
    }
    return false;
}

bool IsGeodeticFrame(PJ const* pj) noexcept {
    return IsType(pj, {PJ_TYPE_GEODETIC_REFERENCE_FRAME, PJ_TYPE_DYNAMIC_GEODETIC_REFERENCE_FRAME});
}

PJ const* Unbound(PJ const* pj, PjPtr& holder) {
    if (!IsType(pj, {PJ_TYPE_BOUND_CRS})) {
        return pj;
    }
    holder.reset(proj_get_source_crs(Ctx(), pj));
    return holder.get();
}

PJ_TYPE EffectiveType(PJ const* pj) {
    if (pj == nullptr) {
        return PJ_TYPE_UNKNOWN;
    }
    PjPtr holder;
    PJ const* const base = Unbound(pj, holder);
    return base != nullptr ? proj_get_type(base) : PJ_TYPE_UNKNOWN;
}

PjPtr LatLonCs(PJ_CONTEXT* ctx, char const* unitName, double toRadian) {
    return PjPtr(proj_create_ellipsoidal_2D_cs(ctx, PJ_ELLPS2D_LATITUDE_LONGITUDE, unitName, toRadian));
}

PjPtr GeodeticFrameOf(PJ_CONTEXT* ctx, PJ const* datum) {
    if (IsGeodeticFrame(datum)) {
        return PjPtr(proj_clone(ctx, datum));
    }
    if (!IsType(datum, {PJ_TYPE_DATUM_ENSEMBLE})) {
        return nullptr;
    }
    // PROJ turns an ensemble into its representative datum only inside a CRS.
    PjPtr const cs = LatLonCs(ctx, kDegree, kDegreeToRadian);
    PjPtr const crs(proj_create_geographic_crs_from_datum(ctx, "unnamed", const_cast<PJ*>(datum), cs.get()));
    if (!crs) {
        return nullptr;
    }
    PjPtr frame(proj_crs_get_datum_forced(ctx, crs.get()));
    return IsGeodeticFrame(frame.get()) ? std::move(frame) : nullptr;
}

bool ReadEllipsoid(PJ_CONTEXT* ctx, PJ const* ellipsoid, EllipsoidParameters& out) {
    if (!IsType(ellipsoid, {PJ_TYPE_ELLIPSOID})) {
        return false;
    }
    double semiMinor = 0.0;
    int computed = 0;
    if (!proj_ellipsoid_get_parameters(ctx, ellipsoid, &out.semiMajor, &semiMinor, &computed,
                                       &out.inverseFlattening)) {
        return false;
    }
    char const* name = proj_get_name(ellipsoid);
    out.name = name != nullptr ? name : "unnamed";
    return true;
}

}  // namespace ZorvoDSG::Host::gk_detail
