#include <gtest/gtest.h>

#include <cmath>

#include "GkTestSupport.h"

using namespace ZorvoDSG::Host;

using gktest::Name;
using gktest::Wkt;

TEST(GkFactory, CoordsysByEpsgThenEsriCode) {
    GkObjectPtr const wgs84(gk_factory_coordsys(4326));
    ASSERT_TRUE(wgs84);
    EXPECT_TRUE(gk_coordsys_p(wgs84.get()));
    EXPECT_EQ(Name(wgs84.get()), "WGS 84");

    GkObjectPtr const utm(gk_factory_coordsys(32633));
    ASSERT_TRUE(utm);
    EXPECT_TRUE(gk_coordsys_p(utm.get()));
    EXPECT_EQ(Name(utm.get()), "WGS 84 / UTM zone 33N");

    GkObjectPtr const esriOnly(gk_factory_coordsys(54030));  // World Robinson
    ASSERT_TRUE(esriOnly);
    EXPECT_TRUE(gk_coordsys_p(esriOnly.get()));
}

TEST(GkFactory, CoordsysRefusesUnknownCodesAndOtherKinds) {
    for (long code : {0L, -4326L, 999999L, 5773L /* vertical */, 5498L /* compound */, 4979L /* 3-D */,
                      4978L /* geocentric */}) {
        EXPECT_EQ(gk_factory_coordsys(code), nullptr) << code;
    }
    std::string text;
    EXPECT_TRUE(gk_last_error_text(text));
    EXPECT_NE(text.find("4978"), std::string::npos) << text;
}

TEST(GkFactory, GeogcsOnlyGivesGeographicCrs) {
    GkObjectPtr const wgs84(gk_factory_geogcs(4326));
    ASSERT_TRUE(wgs84);
    std::string const wkt = Wkt(wgs84.get());
    EXPECT_EQ(wkt.rfind("GEOGCRS[\"WGS 84\"", 0), 0u) << wkt;
    EXPECT_EQ(wkt.find('\n'), std::string::npos);
    EXPECT_EQ(gk_factory_geogcs(32633), nullptr);
}

TEST(GkFactory, CoordsysNamesInEpsgAndEsriSpelling) {
    gktest::Proj proj;
    auto const epsg4326 = proj.Epsg("4326");
    for (char const* name : {"WGS 84", "GCS_WGS_1984"}) {
        GkObjectPtr const crs(gk_factory_object_from_string_by_type(GK_TYPE_COORDSYS, name));
        ASSERT_TRUE(crs) << name;
        auto const parsed = proj.Parse(Wkt(crs.get()));
        EXPECT_TRUE(proj_is_equivalent_to(parsed.get(), epsg4326.get(), PJ_COMP_EQUIVALENT)) << name;
    }
    GkObjectPtr const projected(
        gk_factory_object_from_string_by_type(GK_TYPE_COORDSYS, "WGS 84 / UTM zone 33N"));
    EXPECT_TRUE(gk_coordsys_p(projected.get()));
}

TEST(GkFactory, DatumNamesGiveDatumsWithSpheroids) {
    for (char const* name : {"D_WGS_1984", "World Geodetic System 1984"}) {
        GkObjectPtr const datum(gk_factory_object_from_string_by_type(GK_TYPE_DATUM, name));
        ASSERT_TRUE(datum) << name;
        gk_object* const spheroid = gk_datum_spheroid(datum.get());
        ASSERT_NE(spheroid, nullptr) << name;
        EXPECT_DOUBLE_EQ(gk_spheroid_axis(spheroid), 6378137.0);
        EXPECT_DOUBLE_EQ(1.0 / gk_spheroid_flattening(spheroid), 298.257223563);
    }
    GkObjectPtr const nad83(gk_factory_object_from_string_by_type(GK_TYPE_DATUM, "North American Datum 1983"));
    EXPECT_TRUE(nad83);
}

TEST(GkFactory, PrimeMeridianAndVerticalNames) {
    GkObjectPtr const paris(gk_factory_object_from_string_by_type(GK_TYPE_PRIMEM, "Paris"));
    ASSERT_TRUE(paris);
    EXPECT_EQ(Name(paris.get()), "Paris");
    EXPECT_TRUE(GkObjectPtr(gk_factory_object_from_string_by_type(GK_TYPE_PRIMEM, "Greenwich")));

    GkObjectPtr const egm96(gk_factory_object_from_string_by_type(GK_TYPE_VERTICAL, "EGM96 height"));
    ASSERT_TRUE(egm96);
    EXPECT_TRUE(gk_vertcs_p(egm96.get()));
    EXPECT_EQ(gk_vertcs_model(egm96.get()), GK_VERTCS_MODEL_GRAVITY);

    GkObjectPtr const compound(gk_factory_object_from_string_by_type(GK_TYPE_VERTICAL, "NAD83 + NAVD88 height"));
    EXPECT_TRUE(gk_hvcoordsys_p(compound.get()));

    for (char const* name : {"NAVD88", "North American Vertical Datum 1988"}) {
        GkObjectPtr const vdatum(gk_factory_object_from_string_by_type(GK_TYPE_VDATUM, name));
        ASSERT_TRUE(vdatum) << name;
        EXPECT_TRUE(gk_vdatum_p(vdatum.get()));
        EXPECT_EQ(Name(vdatum.get()), "North American Vertical Datum 1988");
    }
}

TEST(GkFactory, NameLookupsRespectTheMask) {
    struct Case {
        int mask;
        char const* name;
    };
    for (Case const& c : {Case{GK_TYPE_COORDSYS, "no such crs"}, Case{GK_TYPE_COORDSYS, "EGM96 height"},
                          Case{GK_TYPE_COORDSYS, "World Geodetic System 1984"}, Case{GK_TYPE_VDATUM, "WGS 84"},
                          Case{GK_TYPE_DATUM, "Paris"}, Case{GK_TYPE_PRIMEM, "WGS 84"},
                          Case{GK_TYPE_VERTICAL, "WGS 84"}, Case{GK_TYPE_COORDSYS, ""},
                          Case{5, "WGS 84"}, Case{GK_TYPE_COORDSYS, "WGS 8"}}) {
        EXPECT_EQ(gk_factory_object_from_string_by_type(c.mask, c.name), nullptr) << c.mask << " " << c.name;
    }
}
