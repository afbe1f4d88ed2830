// Objects from proj.db: by code and by name.

#include <string>
#include <vector>

#include <zorvodsg/host/gk/Gk.h>
#include <zorvodsg/host/gk/detail/GkCommon.h>

namespace ZorvoDSG::Host {

using namespace gk_detail;

namespace {

constexpr char const* kAuthorities[] = {"EPSG", "ESRI"};

gk_object* CrsFromCode(long code, std::initializer_list<PJ_TYPE> accepted) {
    PJ_CONTEXT* const ctx = BeginCall();
    if (code <= 0) {
        return Fail("invalid coordinate system code " + std::to_string(code));
    }
    std::string const text = std::to_string(code);
    for (char const* authority : kAuthorities) {
        PjPtr crs(proj_create_from_database(ctx, authority, text.c_str(), PJ_CATEGORY_CRS, 0, nullptr));
        if (!crs) {
            continue;
        }
        if (!IsType(crs.get(), accepted)) {
            return Fail("coordinate system " + text + " is not of the requested kind");
        }
        ProjContext::Current()->TakeLog();  // a miss in the first authority is no failure
        return Wrap(std::move(crs));
    }
    return Fail("unknown coordinate system code " + text);
}

std::vector<PJ_TYPE> TypesOfMask(int mask) {
    switch (mask) {
    case GK_TYPE_COORDSYS:
        return {PJ_TYPE_GEOGRAPHIC_2D_CRS, PJ_TYPE_PROJECTED_CRS};
    case GK_TYPE_VDATUM:
        return {PJ_TYPE_VERTICAL_REFERENCE_FRAME, PJ_TYPE_DYNAMIC_VERTICAL_REFERENCE_FRAME};
    case GK_TYPE_VERTICAL:
        return {PJ_TYPE_VERTICAL_CRS, PJ_TYPE_COMPOUND_CRS};
    case GK_TYPE_DATUM:
        return {PJ_TYPE_GEODETIC_REFERENCE_FRAME, PJ_TYPE_DYNAMIC_GEODETIC_REFERENCE_FRAME,
                PJ_TYPE_DATUM_ENSEMBLE};
    case GK_TYPE_PRIMEM:
        return {PJ_TYPE_PRIME_MERIDIAN};
    default:
        return {};
    }
}

// The first current object of the list, else its first object.
PjPtr PickFrom(PJ_CONTEXT* ctx, PJ_OBJ_LIST* list) {
    int const count = list != nullptr ? proj_list_get_count(list) : 0;
    PjPtr first;
    for (int i = 0; i < count; ++i) {
        PjPtr candidate(proj_list_get(ctx, list, i));
        if (!candidate) {
            continue;
        }
        if (!proj_is_deprecated(candidate.get())) {
            return candidate;
        }
        if (!first) {
            first = std::move(candidate);
        }
    }
    return first;
}

}  // namespace

gk_object* gk_factory_coordsys(long code) {
    return CrsFromCode(code, {PJ_TYPE_GEOGRAPHIC_2D_CRS, PJ_TYPE_PROJECTED_CRS});
}

gk_object* gk_factory_geogcs(long code) {
    return CrsFromCode(code, {PJ_TYPE_GEOGRAPHIC_2D_CRS});
}

gk_object* gk_factory_object_from_string_by_type(int typeMask, std::string const& name) {
    PJ_CONTEXT* const ctx = BeginCall();
    std::vector<PJ_TYPE> const types = TypesOfMask(typeMask);
    if (types.empty()) {
        return Fail("unsupported object type mask " + std::to_string(typeMask));
    }
    if (name.empty() || name.find('\0') != std::string::npos) {
        return Fail("invalid object name");
    }
    for (char const* authority : kAuthorities) {
        PjListPtr const list(proj_create_from_name(ctx, authority, name.c_str(), types.data(), types.size(),
                                                   0, 0, nullptr));
        PjPtr found = PickFrom(ctx, list.get());
        if (!found) {
            continue;
        }
        ProjContext::Current()->TakeLog();
        if (typeMask == GK_TYPE_DATUM) {
            // Callers build CRSs on it and ask for its spheroid, which an ensemble lacks.
            found = GeodeticFrameOf(ctx, found.get());
            if (!found) {
                return Fail("cannot use datum '" + name + "'");
            }
        }
        return Wrap(std::move(found));
    }
    return Fail("no object named '" + name + "'");
}

gk_object* gk_factory_projection(int code) {
    BeginCall();
    std::unique_ptr<GkProjection> projection = GkProjection::Create(code);
    if (!projection) {
        return Fail("unknown projection code " + std::to_string(code));
    }
    return projection.release();
}

}  // namespace ZorvoDSG::Host
