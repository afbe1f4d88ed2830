#include <gtest/gtest.h>

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <string>
#include <variant>

#include <zorvodsg/host/gk/GkObjectPtr.h>
#include "spacetime/ProjInspect.h"
#include "spacetime/StrFixture.h"
#include <zorvodsg/spacetime/TimeUnits.h>
#include <zorvodsg/spacetime/UnitSystem.h>

namespace {

using namespace ZorvoDSGTest;
using namespace ZorvoDSG;
using namespace ZorvoDSG::SpaceTime;

const std::string kVertical = "VERT_CS[\"EGM96 height\",VERT_DATUM[\"EGM96 geoid\",2005],UNIT[\"metre\",1]]";
const std::string kCompound =
    "COMPD_CS[\"WGS 84 + EGM96 height\",GEOGCS[\"WGS 84\",DATUM[\"WGS_1984\",SPHEROID[\"WGS 84\",6378137,"
    "298.257223563]],PRIMEM[\"Greenwich\",0],UNIT[\"degree\",0.0174532925199433]]," + kVertical + "]";
const std::string kHorizontal =
    "GEOGCS[\"WGS 84\",DATUM[\"WGS_1984\",SPHEROID[\"WGS 84\",6378137,298.257223563]],PRIMEM[\"Greenwich\",0],"
    "UNIT[\"degree\",0.0174532925199433]]";

std::string VerticalName(const std::string& wkt) {
    const PjPtr crs = ParseCrs(wkt);
    return crs ? proj_get_name(crs.get()) : "";
}

TEST(SpaceTimeReference, FlagsAndCopies) {
    static ZorvoNetCDFDSG::NetCDFWorkspaceLog log;
    const SpaceTimeReference plain(NcVariant{int32_t{5}}, {}, "", true, eVerticalDatumUnspecified, {}, log);
    EXPECT_EQ(plain.GridMappingName(), "");  // a grid mapping that is not text names nothing
    EXPECT_TRUE(plain.bHorizontalEmpty());
    EXPECT_FALSE(plain.bNeedVCS());
    EXPECT_TRUE(plain.bTimeEmpty());
    EXPECT_TRUE(plain.bZUp());
    EXPECT_EQ(log.cMessages(), 0);

    const TimeReference days = ParseTimeUnits("days since 1970-01-01");
    const SpaceTimeReference full("crs"s, AttributeMap({{"epsg_code", "EPSG:4326"s}}), "dbar", false, eVerticalDatumGeoid,
                                  days, log);
    SpaceTimeReference copy = full;
    EXPECT_EQ(copy.GridMappingName(), "crs");
    EXPECT_FALSE(copy.bHorizontalEmpty());
    EXPECT_TRUE(copy.bNeedVCS());
    EXPECT_FALSE(copy.bTimeEmpty());
    EXPECT_FALSE(copy.bZUp());
    EXPECT_EQ(copy.TimeReference().timeUnit(), eTimeDay);
    EXPECT_EQ(copy.VerticalDatumModel(), eVerticalDatumGeoid);
    EXPECT_EQ(copy.WKT(), full.WKT());

    rapidjson::StringBuffer buffer;
    rapidjson::Writer<rapidjson::StringBuffer> writer(buffer);
    full.ToJSON(writer);
    EXPECT_STREQ(buffer.GetString(), "{}");
}

TEST(SpaceTimeReference, UnitQueriesOfZ) {
    s_InitUDUnits2(ZDSG_UDUNITS2_XML);
    EXPECT_TRUE(Str({}, "hPa").bPressureUnits());
    EXPECT_DOUBLE_EQ(Str({}, "hPa")._1Pascal(), 0.01);
    EXPECT_FALSE(Str({}, "m").bPressureUnits());
    EXPECT_EQ(Str({}, "m").ZUnits(), (std::pair<std::string, double>{"Meter", 1.0}));
    ExpectRuntimeError([] { Str({}, "m")._1Pascal(); }, "not pressure units");
}

TEST(VerticalCRS, TidalDatumsAreFixedTexts) {
    const std::pair<eVerticalDatumModel, const char*> expected[] = {
        {eVerticalDatumLowestAstronomicalTide,
         R"x(VERTCRS["LAT_Height",VDATUM["Lowest_Astronomic_Tide"],CS[vertical,1],AXIS["Gravity-related height(H)",up,LENGTHUNIT["Meter",1.0]]])x"},
        {eVerticalDatumMeanHigherHighWater,
         R"x(VERTCRS["MHHW_Height",VDATUM["Mean_Higher_High_Water"],CS[vertical,1],AXIS["Gravity-related height(H)",up,LENGTHUNIT["Meter",1.0]]])x"},
        {eVerticalDatumMeanLowerLowWater,
         R"x(VERTCRS["MLLW_Height",VDATUM["Mean_Lower_Low_Water"],CS[vertical,1],AXIS["Gravity-related height(H)",up,LENGTHUNIT["Meter",1.0]]])x"},
        {eVerticalDatumMeanLowWaterSprings,
         R"x(VERTCRS["MLWS_Height",VDATUM["Mean_Low_Water_Spring_Tides"],CS[vertical,1],AXIS["Gravity-relatedheight (H)",up,LENGTHUNIT["Meter",1.0]]])x"},
        {eVerticalDatumMeanSeaLevel,
         R"x(VERTCRS["MSL_Height",VDATUM["Mean_Sea_Level"],CS[vertical,1],AXIS["Gravity-related height(H)",up,LENGTHUNIT["Meter",1.0]]])x"},
    };
    for (const auto& [model, text] : expected) {
        EXPECT_EQ(Str({}, "m", model).VWKT(), text) << model;
        // Nothing else is consulted, not even a broken WKT.
        EXPECT_EQ(Str(AttributeMap({{"crs_wkt", "garbage"s}, {"geoid_name", "Atlantis"s}}), "m", model).VWKT(), text);
    }
}

TEST(VerticalCRS, CompoundMustAgreeWithTheImpliedDatum) {
    const std::string vertical = Str(AttributeMap({{"crs_wkt", kCompound}}), "m", eVerticalDatumGeoid).VWKT();
    EXPECT_EQ(VerticalName(vertical), "EGM96 height");
    EXPECT_EQ(vertical.rfind("VERTCRS[", 0), 0u);
    for (const eVerticalDatumModel model : {eVerticalDatumUnspecified, eVerticalDatumEllipsoid}) {
        ExpectException([&] { Str(AttributeMap({{"crs_wkt", kCompound}}), "m", model).VWKT(); }, eVerticalDatumModelMismatch,
                        vertical);
    }
    // A vertical CRS alone is taken whatever the datum model.
    for (const eVerticalDatumModel model : {eVerticalDatumUnspecified, eVerticalDatumEllipsoid, eVerticalDatumGeoid}) {
        EXPECT_EQ(VerticalName(Str(AttributeMap({{"spatial_ref", kVertical}}), "m", model).VWKT()), "EGM96 height");
    }
    // The horizontal side of the same attribute.
    EXPECT_EQ(Geographic(Str(AttributeMap({{"crs_wkt", kCompound}})).WKT()).name, "WGS 84");
}

TEST(VerticalCRS, LastWktAttributeDecides) {
    // The compound's vertical part is replaced by the horizontal attribute's empty result, and then
    // the geoid name decides.
    const std::string fromGeoid = Str(AttributeMap({{"zorvo_gk_string", kCompound}, {"crs_wkt", kHorizontal},
                                             {"geoid_name", "EGM96 geoid"s}}),
                                      "m", eVerticalDatumGeoid)
                                      .VWKT();
    EXPECT_EQ(VerticalName(fromGeoid), "EGM96 geoid_VCS");
    EXPECT_EQ(Str(AttributeMap({{"zorvo_gk_string", kCompound}, {"crs_wkt", kHorizontal}}), "m", eVerticalDatumGeoid).VWKT(),
              "");
    EXPECT_EQ(VerticalName(Str(AttributeMap({{"zorvo_gk_string", kHorizontal}, {"spatial_ref", kVertical}})).VWKT()),
              "EGM96 height");
    // Every present attribute is parsed, even one that a later one would override.
    EXPECT_THROW(Str(AttributeMap({{"zorvo_gk_string", "VERT_CS["s}, {"spatial_ref", kVertical}})).VWKT(), Exception);
    ExpectBadWkt([] { Str(AttributeMap({{"crs_wkt", kHorizontal}, {"spatial_ref", "nonsense"s}})).VWKT(); }, "nonsense");
}

TEST(VerticalCRS, NamedGeoidOrGeopotentialDatum) {
    EXPECT_EQ(Str({}).VWKT(), "");
    EXPECT_EQ(Str(AttributeMap({{"geoid_name", ""s}})).VWKT(), "");
    const std::string navd = Str(AttributeMap({{"geopotential_datum_name", "NAVD88"s}})).VWKT();
    EXPECT_EQ(VerticalName(navd), "North American Vertical Datum 1988_VCS");
    // geoid_name is preferred.
    EXPECT_EQ(VerticalName(Str(AttributeMap({{"geopotential_datum_name", "Atlantis"s}, {"geoid_name", "EGM96 geoid"s}})).VWKT()),
              "EGM96 geoid_VCS");
    // A compound CRS by name is returned whole.
    const std::string compound = Str(AttributeMap({{"geoid_name", "WGS 84 + EGM96 height"s}})).VWKT();
    EXPECT_EQ(compound.rfind("COMPOUNDCRS[", 0), 0u) << compound;

    ExpectException([] { Str(AttributeMap({{"geoid_name", "Atlantis"s}})).VWKT(); }, eBadVerticalDatumName, "Atlantis");
    ExpectException([] { Str(AttributeMap({{"geoid_name", "EGM96 height"s}})).VWKT(); }, eWKTNotVertical, "EGM96 height");
    EXPECT_THROW(Str(AttributeMap({{"geoid_name", 5.0}})).VWKT(), std::bad_variant_access);
    EXPECT_THROW(Str(AttributeMap({{"crs_wkt", int32_t{1}}})).VWKT(), std::bad_variant_access);
}

}  // namespace
