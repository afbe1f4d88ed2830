// Kinds of objects, the vertical model, clone and release.

#include <algorithm>
#include <cctype>
#include <string>

#include <zorvodsg/host/gk/Gk.h>
#include <zorvodsg/host/gk/detail/GkCommon.h>

namespace ZorvoDSG::Host {

using namespace gk_detail;

namespace {

bool ContainsNoCase(char const* text, std::string_view word) {
    if (text == nullptr) {
        return false;
    }
    std::string_view const haystack(text);
    return std::search(haystack.begin(), haystack.end(), word.begin(), word.end(), [](char a, char b) {
               return std::tolower(static_cast<unsigned char>(a)) == std::tolower(static_cast<unsigned char>(b));
           }) != haystack.end();
}

}  // namespace

bool gk_hvcoordsys_p(gk_object const* object) {
    return EffectiveType(AsPj(object)) == PJ_TYPE_COMPOUND_CRS;
}

bool gk_coordsys_p(gk_object const* object) {
    PJ_TYPE const type = EffectiveType(AsPj(object));
    return type == PJ_TYPE_GEOGRAPHIC_2D_CRS || type == PJ_TYPE_PROJECTED_CRS;
}

bool gk_vertcs_p(gk_object const* object) {
    return EffectiveType(AsPj(object)) == PJ_TYPE_VERTICAL_CRS;
}

bool gk_vdatum_p(gk_object const* object) {
    return IsType(AsPj(object), {PJ_TYPE_VERTICAL_REFERENCE_FRAME, PJ_TYPE_DYNAMIC_VERTICAL_REFERENCE_FRAME});
}

int gk_vertcs_model(gk_object const* vertcs) {
    PJ_CONTEXT* const ctx = BeginCall();
    PjPtr holder;
    PJ const* const crs = Unbound(AsPj(vertcs), holder);
    if (!IsType(crs, {PJ_TYPE_VERTICAL_CRS})) {
        return GK_VERTCS_MODEL_NONE;
    }
    // A vertical CRS is gravity-related unless it measures ellipsoidal height, which PROJ shows
    // in the axis (ESRI VERTCS on a geodetic DATUM) or which the datum's name may state.
    PjPtr const cs(proj_crs_get_coordinate_system(ctx, crs));
    char const* axisName = nullptr;
    if (!cs || !proj_cs_get_axis_info(ctx, cs.get(), 0, &axisName, nullptr, nullptr, nullptr, nullptr, nullptr,
                                      nullptr)) {
        return GK_VERTCS_MODEL_NONE;
    }
    PjPtr const datum(proj_crs_get_datum_forced(ctx, crs));
    char const* const datumName = datum ? proj_get_name(datum.get()) : nullptr;
    if (ContainsNoCase(axisName, "ellipsoidal") || ContainsNoCase(datumName, "ellipsoid")) {
        return GK_VERTCS_MODEL_ELLIPSOIDAL;
    }
    return GK_VERTCS_MODEL_GRAVITY;
}

gk_object* gk_object_clone(gk_object const* object) {
    BeginCall();
    if (object == nullptr) {
        return Fail("no object to clone");
    }
    std::unique_ptr<gk_object> copy = object->Clone();
    if (!copy) {
        return Fail("cannot clone the object");
    }
    return copy.release();
}

void gk_object_del(gk_object* object) {
    delete object;
}

}  // namespace ZorvoDSG::Host
