#include "spacetime/ProjInspect.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <numbers>

namespace ZorvoDSGTest {

PjPtr ParseCrs(const std::string& text) {
    PjPtr crs(proj_create(nullptr, text.c_str()));
    EXPECT_TRUE(crs) << "PROJ cannot read: " << text;
    return crs;
}

ProjectionInfo Projection(const std::string& wkt) {
    ProjectionInfo info;
    const PjPtr crs = ParseCrs(wkt);
    if (!crs) {
        return info;
    }
    const PjPtr conversion(proj_crs_get_coordoperation(nullptr, crs.get()));
    EXPECT_TRUE(conversion) << "not a projected CRS: " << wkt;
    if (!conversion) {
        return info;
    }
    const char* methodName = nullptr;
    const char* methodCode = nullptr;
    proj_coordoperation_get_method_info(nullptr, conversion.get(), &methodName, nullptr, &methodCode);
    info.method = methodName != nullptr ? methodName : "";
    info.methodCode = methodCode != nullptr ? std::atoi(methodCode) : 0;
    const int count = proj_coordoperation_get_param_count(nullptr, conversion.get());
    for (int i = 0; i < count; ++i) {
        const char* code = nullptr;
        double value = 0;
        double toSI = 1;
        const char* unitCategory = nullptr;
        proj_coordoperation_get_param(nullptr, conversion.get(), i, nullptr, nullptr, &code, &value, nullptr, &toSI,
                                      nullptr, nullptr, nullptr, &unitCategory);
        if (unitCategory != nullptr && std::string(unitCategory) == "angular") {
            value = value * toSI * 180.0 / std::numbers::pi;
        } else {
            value *= toSI;
        }
        info.parameters[code != nullptr ? std::atoi(code) : -i - 1] = value;
    }
    return info;
}

GeographicInfo Geographic(const std::string& wkt) {
    GeographicInfo info;
    PjPtr crs = ParseCrs(wkt);
    if (!crs) {
        return info;
    }
    info.type = proj_get_type(crs.get());
    if (info.type == PJ_TYPE_PROJECTED_CRS) {
        crs.reset(proj_get_source_crs(nullptr, crs.get()));
    }
    info.name = proj_get_name(crs.get());
    const PjPtr datum(proj_crs_get_datum(nullptr, crs.get()));
    if (datum) {
        info.datumName = proj_get_name(datum.get());
    }
    const PjPtr ellipsoid(proj_get_ellipsoid(nullptr, crs.get()));
    if (ellipsoid) {
        info.ellipsoidName = proj_get_name(ellipsoid.get());
        proj_ellipsoid_get_parameters(nullptr, ellipsoid.get(), &info.semiMajorAxis, nullptr, nullptr,
                                      &info.inverseFlattening);
    }
    const PjPtr primeMeridian(proj_get_prime_meridian(nullptr, crs.get()));
    if (primeMeridian) {
        info.primeMeridianName = proj_get_name(primeMeridian.get());
        double toRadians = 1;
        proj_prime_meridian_get_parameters(nullptr, primeMeridian.get(), &info.primeMeridianDegrees, &toRadians,
                                           nullptr);
        info.primeMeridianDegrees *= toRadians * 180.0 / std::numbers::pi;
    }
    return info;
}

bool SameConversion(const std::string& wktA, const std::string& wktB) {
    const PjPtr a = ParseCrs(wktA);
    const PjPtr b = ParseCrs(wktB);
    if (!a || !b) {
        return false;
    }
    const PjPtr conversionA(proj_crs_get_coordoperation(nullptr, a.get()));
    const PjPtr conversionB(proj_crs_get_coordoperation(nullptr, b.get()));
    return conversionA && conversionB && proj_is_equivalent_to(conversionA.get(), conversionB.get(), PJ_COMP_EQUIVALENT);
}

}  // namespace ZorvoDSGTest
