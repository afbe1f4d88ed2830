#include <zorvodsg/spacetime/detail/GkText.h>

#include <stdexcept>

#include <zorvodsg/host/Utf8.h>
#include <zorvodsg/values/Exception.h>

using namespace ZorvoDSG::Host;

namespace ZorvoDSG::SpaceTime::detail {

std::string GkWkt(gk_object const* object) {
    std::string wkt;
    if (object == nullptr || !gk_object_to_string(object, wkt)) {
        throw std::runtime_error("cannot write coordinate system as WKT");
    }
    return wkt;
}

GkObjectPtr GkParseWkt(const std::string& wkt) {
    gk_err_ext err;
    GkObjectPtr object(gk_object_from_string_errext(wkt, &err));
    if (!object) {
        std::string text;
        if (!gk_err_num_to_str(err.err_num, text)) {
            text = err.message;
        }
        throw Exception(eBadWKT, Utf8ToWide(text + ": " + wkt), {});
    }
    return object;
}

GkObjectPtr GkRequire(gk_object* object, const char* what) {
    GkObjectPtr held(object);
    if (!held) {
        std::string text = what;
        std::string reason;
        if (gk_last_error_text(reason) && !reason.empty()) {
            text += ": " + reason;
        }
        throw std::runtime_error(text);
    }
    return held;
}

}  // namespace ZorvoDSG::SpaceTime::detail
