#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "GkTestSupport.h"

using namespace ZorvoDSG::Host;

using gktest::Name;
using gktest::Wkt;

namespace {

struct Wgs84Parts {
    GkObjectPtr crs{gk_factory_geogcs(4326)};
    GkObjectPtr datum{GkCloneOf(gk_geogcs_datum(crs.get()))};
    GkObjectPtr primem{GkCloneOf(gk_geogcs_primem(crs.get()))};
    GkObjectPtr unit{GkCloneOf(gk_geogcs_unit(crs.get()))};
    GkObjectPtr spheroid{GkCloneOf(gk_datum_spheroid(datum.get()))};
};

}  // namespace

TEST(GkBuild, DecomposesWgs84) {
    Wgs84Parts const parts;
    ASSERT_TRUE(parts.datum && parts.primem && parts.unit && parts.spheroid);
    EXPECT_EQ(Name(parts.datum.get()), "World Geodetic System 1984");
    EXPECT_EQ(Name(parts.primem.get()), "Greenwich");
    EXPECT_EQ(Name(parts.unit.get()), "degree");
    EXPECT_DOUBLE_EQ(gk_spheroid_axis(parts.spheroid.get()), 6378137.0);
    EXPECT_NEAR(gk_spheroid_flattening(parts.spheroid.get()), 1.0 / 298.257223563, 1e-15);
    // Borrowed parts stay put while their parent lives.
    EXPECT_EQ(gk_geogcs_datum(parts.crs.get()), gk_geogcs_datum(parts.crs.get()));
    EXPECT_TRUE(std::isnan(gk_spheroid_axis(parts.datum.get())));
    EXPECT_EQ(gk_geogcs_datum(parts.datum.get()), nullptr);
}

TEST(GkBuild, RebuildsAnEllipsoidalGeographicCrs) {
    Wgs84Parts const parts;
    GkObjectPtr const spheroid(gk_spheroid_new("gm_S", 6378137.0, 1.0 / 298.257223563));
    GkObjectPtr const datum(gk_datum_new("gm_D", spheroid.get()));
    GkObjectPtr const crs(gk_geogcs_new("gm_GCS", datum.get(), parts.primem.get(), parts.unit.get()));
    ASSERT_TRUE(crs);
    EXPECT_TRUE(gk_coordsys_p(crs.get()));
    gktest::Proj proj;
    auto const parsed = proj.Parse(Wkt(crs.get()));
    auto const epsg4326 = proj.Epsg("4326");
    ASSERT_TRUE(parsed);
    EXPECT_EQ(std::string(proj_get_name(parsed.get())), "gm_GCS");
    EXPECT_EQ(proj_get_type(parsed.get()), PJ_TYPE_GEOGRAPHIC_2D_CRS);
    // Same figure and latitude-first axes as EPSG:4326, on another datum.
    EXPECT_TRUE(proj_is_equivalent_to(gktest::Pj(proj_get_ellipsoid(proj.ctx(), parsed.get())).get(),
                                      gktest::Pj(proj_get_ellipsoid(proj.ctx(), epsg4326.get())).get(),
                                      PJ_COMP_EQUIVALENT));
    gktest::Pj const cs(proj_crs_get_coordinate_system(proj.ctx(), parsed.get()));
    char const* direction = nullptr;
    proj_cs_get_axis_info(proj.ctx(), cs.get(), 0, nullptr, nullptr, &direction, nullptr, nullptr, nullptr, nullptr);
    EXPECT_STREQ(direction, "north");
    EXPECT_NE(Wkt(crs.get()).find("DATUM[\"gm_D\""), std::string::npos);
}

TEST(GkBuild, SpheresFromZeroOrInfiniteFlattening) {
    double const infinite = std::numeric_limits<double>::infinity();
    for (double f : {0.0, infinite, -infinite}) {
        GkObjectPtr const sphere(gk_spheroid_new("gm_S", 6371229.0, f));
        ASSERT_TRUE(sphere) << f;
        EXPECT_EQ(gk_spheroid_flattening(sphere.get()), 0.0);
        EXPECT_DOUBLE_EQ(gk_spheroid_axis(sphere.get()), 6371229.0);
    }
    double const nan = std::numeric_limits<double>::quiet_NaN();
    for (double f : {nan, -0.1, 1.0, 2.0}) {
        EXPECT_EQ(gk_spheroid_new("bad", 6371229.0, f), nullptr) << f;
    }
    for (double a : {0.0, -1.0, nan, infinite}) {
        EXPECT_EQ(gk_spheroid_new("bad", a, 0.0), nullptr) << a;
    }
}

TEST(GkBuild, SphericalCrsAndForeignPrimeMeridian) {
    Wgs84Parts const parts;
    GkObjectPtr const sphere(gk_spheroid_new("gm_S", 6371229.0, 0.0));
    GkObjectPtr const datum(gk_datum_new("gm_D", sphere.get()));
    GkObjectPtr const pm(gk_primem_new("gm_PM", 2.5));
    GkObjectPtr const crs(gk_geogcs_new("gm_Sphere", datum.get(), pm.get(), parts.unit.get()));
    ASSERT_TRUE(crs);
    gk_object* const primem = gk_geogcs_primem(crs.get());
    EXPECT_EQ(Name(primem), "gm_PM");
    EXPECT_EQ(gk_spheroid_flattening(gk_datum_spheroid(gk_geogcs_datum(crs.get()))), 0.0);

    GkObjectPtr const paris(gk_factory_object_from_string_by_type(GK_TYPE_PRIMEM, "Paris"));
    GkObjectPtr const onParis(gk_geogcs_new("x_GCS", parts.datum.get(), paris.get(), nullptr));
    ASSERT_TRUE(onParis);
    EXPECT_NE(Wkt(onParis.get()).find("PRIMEM[\"Paris\""), std::string::npos);
}

TEST(GkBuild, RefusesWrongKindsOfArguments) {
    Wgs84Parts const parts;
    EXPECT_EQ(gk_datum_new("x", parts.datum.get()), nullptr);
    EXPECT_EQ(gk_geogcs_new("x", parts.spheroid.get(), nullptr, nullptr), nullptr);
    EXPECT_EQ(gk_geogcs_new("x", parts.datum.get(), parts.datum.get(), nullptr), nullptr);
    EXPECT_EQ(gk_geogcs_new("x", parts.datum.get(), nullptr, parts.primem.get()), nullptr);
    EXPECT_EQ(gk_geogcs_new("x", nullptr, nullptr, nullptr), nullptr);
    EXPECT_EQ(gk_primem_new("x", std::numeric_limits<double>::quiet_NaN()), nullptr);
    EXPECT_EQ(gk_object_clone(nullptr), nullptr);
    gk_object_del(nullptr);
}

TEST(GkBuild, VerticalCrsOnANamedDatum) {
    gk_object* const vdatum = gk_factory_object_from_string_by_type(GK_TYPE_VDATUM, "NAVD88");
    ASSERT_NE(vdatum, nullptr);
    std::string name;
    ASSERT_TRUE(gk_object_name(vdatum, name));
    GkObjectPtr const vcrs(gk_vertcs_new(name + "_VCS", vdatum, nullptr, nullptr));
    ASSERT_TRUE(vcrs);
    EXPECT_TRUE(gk_vertcs_p(vcrs.get()));
    EXPECT_EQ(gk_vertcs_model(vcrs.get()), GK_VERTCS_MODEL_GRAVITY);
    std::string const wkt = Wkt(vcrs.get());
    EXPECT_EQ(wkt.rfind("VERTCRS[\"North American Vertical Datum 1988_VCS\","
                        "VDATUM[\"North American Vertical Datum 1988\"",
                        0),
              0u)
        << wkt;
    EXPECT_NE(wkt.find("ID[\"EPSG\",5103]"), std::string::npos) << wkt;
    EXPECT_NE(wkt.find("up,LENGTHUNIT[\"metre\",1"), std::string::npos) << wkt;
    // Ownership passes even when the datum is refused.
    EXPECT_EQ(gk_vertcs_new("x", gk_factory_geogcs(4326), nullptr, nullptr), nullptr);
}
