#pragma once
// Reads gk output back with PROJ directly, so the tests judge the facade by PROJ's own view.

#include <gtest/gtest.h>
#include <proj.h>

#include <memory>
#include <optional>
#include <string>

#include <zorvodsg/host/gk/GkObjectPtr.h>
#include <zorvodsg/host/gk/detail/ProjHandles.h>

namespace gktest {

using namespace ZorvoDSG::Host;

using Pj = gk_detail::PjPtr;

// A quiet PROJ context of the test's own.
class Proj {
public:
    Proj() : m_ctx(proj_context_create()) {
        proj_log_func(m_ctx, nullptr, [](void*, int, char const*) {});
    }
    ~Proj() { proj_context_destroy(m_ctx); }
    Proj(Proj const&) = delete;
    Proj& operator=(Proj const&) = delete;

    PJ_CONTEXT* ctx() const { return m_ctx; }
    Pj Parse(std::string const& wkt) const { return Pj(proj_create(m_ctx, wkt.c_str())); }
    Pj Epsg(char const* code) const {
        return Pj(proj_create_from_database(m_ctx, "EPSG", code, PJ_CATEGORY_CRS, 0, nullptr));
    }

    std::string MethodName(PJ* crs) const {
        Pj const op(proj_crs_get_coordoperation(m_ctx, crs));
        char const* name = nullptr;
        if (!op || !proj_coordoperation_get_method_info(m_ctx, op.get(), &name, nullptr, nullptr)) {
            return {};
        }
        return name;
    }

    // The value of a conversion parameter by its EPSG name, in degrees or metres.
    std::optional<double> Param(PJ* crs, char const* name) const {
        Pj const op(proj_crs_get_coordoperation(m_ctx, crs));
        if (!op) {
            return std::nullopt;
        }
        int const index = proj_coordoperation_get_param_index(m_ctx, op.get(), name);
        double value = 0.0;
        if (index < 0 || !proj_coordoperation_get_param(m_ctx, op.get(), index, nullptr, nullptr, nullptr, &value,
                                                        nullptr, nullptr, nullptr, nullptr, nullptr, nullptr)) {
            return std::nullopt;
        }
        return value;
    }

private:
    PJ_CONTEXT* m_ctx;
};

inline std::string Wkt(gk_object const* object) {
    std::string text;
    EXPECT_TRUE(gk_object_to_string(object, text));
    return text;
}

inline std::string Name(gk_object const* object) {
    std::string text;
    gk_object_name(object, text);
    return text;
}

}  // namespace gktest
