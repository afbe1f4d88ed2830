#include <gtest/gtest.h>

#include <limits>
#include <utility>
#include <vector>

#include "GkTestSupport.h"

using namespace ZorvoDSG::Host;

using gktest::Wkt;

namespace {

struct Setting {
    int slot;
    double value;
};

struct Expected {
    char const* parameter;
    double value;
};

struct ProjectionCase {
    int code;
    std::vector<Setting> settings;
    char const* method;
    std::vector<Expected> expected;
};

// Builds <code> on WGS 84 the way the system does: defaults, then the given slots.
GkObjectPtr BuildProjected(int code, std::vector<Setting> const& settings) {
    GkObjectPtr const geogcs(gk_factory_geogcs(4326));
    GkObjectPtr const projection(gk_factory_projection(code));
    gk_parameter* params[GK_PARAMETER_COUNT];
    EXPECT_TRUE(gk_projection_defaults(projection.get(), params));
    for (Setting const& s : settings) {
        EXPECT_TRUE(gk_parameter_value_set(params[s.slot], s.value)) << code << " slot " << s.slot;
    }
    return GkObjectPtr(gk_projcs_new("gm_PCS", geogcs.get(), projection.get(), params, nullptr));
}

void Check(ProjectionCase const& c) {
    SCOPED_TRACE(c.code);
    GkObjectPtr const crs = BuildProjected(c.code, c.settings);
    ASSERT_TRUE(crs);
    EXPECT_TRUE(gk_coordsys_p(crs.get()));
    gktest::Proj proj;
    auto const parsed = proj.Parse(Wkt(crs.get()));
    ASSERT_TRUE(parsed);
    EXPECT_EQ(proj_get_type(parsed.get()), PJ_TYPE_PROJECTED_CRS);
    EXPECT_EQ(proj.MethodName(parsed.get()), c.method);
    for (Expected const& e : c.expected) {
        auto const value = proj.Param(parsed.get(), e.parameter);
        ASSERT_TRUE(value.has_value()) << e.parameter << " in " << Wkt(crs.get());
        EXPECT_DOUBLE_EQ(*value, e.value) << e.parameter;
    }
}

}  // namespace

TEST(GkProjection, EveryCodeWithDefaultsAndSettings) {
    std::vector<ProjectionCase> const cases = {
        {43007, {{3, 25}, {4, 45}, {2, -96}, {6, 23}, {0, 100}, {1, 200}}, "Albers Equal Area",
         {{"Latitude of 1st standard parallel", 25}, {"Latitude of 2nd standard parallel", 45},
          {"Longitude of false origin", -96}, {"Latitude of false origin", 23}, {"Easting at false origin", 100},
          {"Northing at false origin", 200}}},
        {43032, {{2, 10}, {6, 50}}, "Modified Azimuthal Equidistant",  // PROJ 9.1's name for its aeqd
         {{"Longitude of natural origin", 10}, {"Latitude of natural origin", 50}, {"False easting", 0}}},
        {43033, {{2, 10}, {6, 52}, {0, 4321000}, {1, 3210000}}, "Lambert Azimuthal Equal Area",
         {{"Longitude of natural origin", 10}, {"Latitude of natural origin", 52}, {"False easting", 4321000},
          {"False northing", 3210000}}},
        {43020, {{3, 33}, {4, 45}, {2, -97}, {6, 40}}, "Lambert Conic Conformal (2SP)",
         {{"Latitude of 1st standard parallel", 33}, {"Latitude of 2nd standard parallel", 45},
          {"Longitude of false origin", -97}, {"Latitude of false origin", 40}}},
        {43034, {{2, 5}, {3, 30}}, "Lambert Cylindrical Equal Area",
         {{"Longitude of natural origin", 5}, {"Latitude of 1st standard parallel", 30}}},
        {43004, {{2, 100}, {3, 20}}, "Mercator (variant B)",
         {{"Longitude of natural origin", 100}, {"Latitude of 1st standard parallel", 20}}},
        {43069, {{2, 100}, {5, 0.997}}, "Mercator (variant A)",
         {{"Longitude of natural origin", 100}, {"Scale factor at natural origin", 0.997},
          {"Latitude of natural origin", 0}}},
        {43037, {{10, -86}, {11, 45}, {7, 337.25556}, {5, 0.9996}}, "Hotine Oblique Mercator (variant B)",
         {{"Longitude of projection centre", -86}, {"Latitude of projection centre", 45},
          {"Azimuth of initial line", 337.25556}, {"Angle from Rectified to Skew Grid", 337.25556},
          {"Scale factor on initial line", 0.9996}}},
        {43058, {{10, 20}, {11, 40}}, "Orthographic",
         {{"Longitude of natural origin", 20}, {"Latitude of natural origin", 40}}},
        {43067, {{2, -45}, {3, 70}}, "Polar Stereographic (variant B)",
         {{"Longitude of origin", -45}, {"Latitude of standard parallel", 70}}},
        {43066, {{2, 0}, {5, 0.994}, {0, 2000000}, {1, 2000000}}, "Polar Stereographic (variant A)",
         {{"Latitude of natural origin", 90}, {"Scale factor at natural origin", 0.994}, {"False easting", 2000000}}},
        {43066, {{6, -90}}, "Polar Stereographic (variant A)", {{"Latitude of natural origin", -90}}},
        {43008, {{2, 30}}, "Sinusoidal", {{"Longitude of natural origin", 30}}},
        {43026, {{2, 5.4}, {6, 52.15}, {5, 0.9999079}}, "Oblique Stereographic",
         {{"Longitude of natural origin", 5.4}, {"Latitude of natural origin", 52.15},
          {"Scale factor at natural origin", 0.9999079}}},
        {43006, {}, "Transverse Mercator",
         {{"Latitude of natural origin", 0}, {"Longitude of natural origin", 0}, {"Scale factor at natural origin", 1},
          {"False easting", 0}, {"False northing", 0}}},
    };
    for (ProjectionCase const& c : cases) {
        Check(c);
    }
}

TEST(GkProjection, TransverseMercatorMatchesUtm33N) {
    GkObjectPtr const crs = BuildProjected(43006, {{5, 0.9996}, {2, 15}, {0, 500000}});
    ASSERT_TRUE(crs);
    gktest::Proj proj;
    auto const parsed = proj.Parse(Wkt(crs.get()));
    auto const utm = proj.Epsg("32633");
    EXPECT_TRUE(proj_is_equivalent_to(parsed.get(), utm.get(), PJ_COMP_EQUIVALENT_EXCEPT_AXIS_ORDER_GEOGCRS));
}

TEST(GkProjection, LambertConicWithOneParallelIsATangentCone) {
    gktest::Proj proj;
    // Origin on the parallel: the 1SP method itself.
    auto const oneSp = proj.Parse(Wkt(BuildProjected(43020, {{3, 25}, {6, 25}, {2, -95}}).get()));
    EXPECT_EQ(proj.MethodName(oneSp.get()), "Lambert Conic Conformal (1SP)");
    EXPECT_EQ(proj.Param(oneSp.get(), "Latitude of natural origin"), 25.0);
    EXPECT_EQ(proj.Param(oneSp.get(), "Scale factor at natural origin"), 1.0);
    // Origin elsewhere: the same cone through the 2SP method.
    auto const tangent = proj.Parse(Wkt(BuildProjected(43020, {{3, 25}, {2, -95}}).get()));
    EXPECT_EQ(proj.MethodName(tangent.get()), "Lambert Conic Conformal (2SP)");
    EXPECT_EQ(proj.Param(tangent.get(), "Latitude of 2nd standard parallel"), 25.0);
    EXPECT_EQ(proj.Param(tangent.get(), "Latitude of false origin"), 0.0);
}

TEST(GkProjection, SlotsTheMethodDoesNotUseAreNull) {
    GkObjectPtr const projection(gk_factory_projection(43008));
    gk_parameter* params[GK_PARAMETER_COUNT];
    ASSERT_TRUE(gk_projection_defaults(projection.get(), params));
    EXPECT_NE(params[GK_PARM_CENTRAL_MERIDIAN], nullptr);
    EXPECT_EQ(params[GK_PARM_SCALE_FACTOR], nullptr);
    EXPECT_EQ(params[GK_PARM_LONGITUDE_OF_CENTER], nullptr);
    EXPECT_FALSE(gk_parameter_value_set(params[GK_PARM_SCALE_FACTOR], 2.0));
    std::string name;
    EXPECT_TRUE(gk_object_name(projection.get(), name));
    EXPECT_EQ(name, "Sinusoidal");
}

TEST(GkProjection, RefusesBadCodesAndValues) {
    for (int code : {0, 43000, 43005, -43006}) {
        EXPECT_EQ(gk_factory_projection(code), nullptr) << code;
    }
    double const nan = std::numeric_limits<double>::quiet_NaN();
    double const inf = std::numeric_limits<double>::infinity();
    EXPECT_FALSE(BuildProjected(43006, {{2, nan}}));
    EXPECT_FALSE(BuildProjected(43006, {{0, inf}}));
    EXPECT_FALSE(BuildProjected(43066, {{6, 45}}));  // polar stereographic needs a pole
    GkObjectPtr const projection(gk_factory_projection(43006));
    GkObjectPtr const utm(gk_factory_coordsys(32633));
    gk_parameter* params[GK_PARAMETER_COUNT];
    ASSERT_TRUE(gk_projection_defaults(projection.get(), params));
    EXPECT_EQ(gk_projcs_new("x", utm.get(), projection.get(), params, nullptr), nullptr);  // not geographic
    EXPECT_EQ(gk_projcs_new("x", utm.get(), nullptr, params, nullptr), nullptr);
    EXPECT_FALSE(gk_projection_defaults(utm.get(), params));
}

TEST(GkProjection, DefaultsResetEarlierSettings) {
    GkObjectPtr const geogcs(gk_factory_geogcs(4326));
    GkObjectPtr const projection(gk_factory_projection(43006));
    gk_parameter* params[GK_PARAMETER_COUNT];
    ASSERT_TRUE(gk_projection_defaults(projection.get(), params));
    gk_parameter_value_set(params[GK_PARM_FALSE_EASTING], 500000);
    ASSERT_TRUE(gk_projection_defaults(projection.get(), params));
    GkObjectPtr const crs(gk_projcs_new("x", geogcs.get(), projection.get(), params, nullptr));
    gktest::Proj proj;
    EXPECT_EQ(proj.Param(proj.Parse(Wkt(crs.get())).get(), "False easting"), 0.0);
}
