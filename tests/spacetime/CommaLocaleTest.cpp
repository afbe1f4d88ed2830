// A host that has switched the process to a locale with a decimal comma (as a German desktop
// application does with setlocale(LC_ALL, "de_DE.UTF-8")): every number the library reads or writes
// keeps its decimal point. Debian's locales-all provides the locale (scripts/install-deps.sh).

#include <gtest/gtest.h>

#include <clocale>
#include <string>

#include <zorvodsg/host/gk/Gk.h>
#include <zorvodsg/host/gk/GkObjectPtr.h>
#include <zorvodsg/spacetime/SpaceTimeReference.h>
#include <zorvodsg/spacetime/TimeUnits.h>
#include <zorvodsg/spacetime/UnitSystem.h>
#include <zorvodsg/spacetime/VerticalUnits.h>
#include <zorvodsg/values/NcVariant.h>
#include <zorvodsg/values/NetCDFWorkspaceLog.h>

namespace {

using namespace ZorvoDSG;
using namespace ZorvoDSG::SpaceTime;
using namespace std::string_literals;
using System::NcVariant;

class CommaLocale : public ::testing::Test {
protected:
    void SetUp() override {
        m_previous = std::setlocale(LC_ALL, nullptr);
        ASSERT_NE(std::setlocale(LC_ALL, "de_DE.UTF-8"), nullptr)
            << "de_DE.UTF-8 is missing: install Debian's locales-all (scripts/install-deps.sh)";
        ASSERT_STREQ(std::localeconv()->decimal_point, ",");
        s_InitUDUnits2(ZDSG_UDUNITS2_XML);
    }
    void TearDown() override { std::setlocale(LC_ALL, m_previous.c_str()); }

private:
    std::string m_previous;
};

TEST_F(CommaLocale, TextToNumber) {
    EXPECT_EQ(System::s_ToDouble(NcVariant(" 2.5e1"s)), 25.0);
    EXPECT_EQ(System::s_ToDouble(NcVariant("7.5 m"s)), 7.5);
    EXPECT_EQ(System::s_ToDouble(NcVariant("+0.25"s)), 0.25);
    EXPECT_EQ(System::s_ToDouble(NcVariant("-0x1.8p1"s)), -3.0);
    EXPECT_EQ(System::s_ToDouble(NcVariant("2,5"s)), 2.0);  // a comma ends the number, as in CF
    EXPECT_THROW(System::s_ToDouble(NcVariant("+-1"s)), std::invalid_argument);
}

TEST_F(CommaLocale, UnitsParseAndFormatWithAPoint) {
    EXPECT_TRUE(ParseUnit("0.5 m"));
    EXPECT_TRUE(IsLengthUnit(ParseUnit("0.5 m")));
    EXPECT_DOUBLE_EQ(ZUnits("0.5 m").second, 0.5);
    EXPECT_NE(ZUnits("0.5 m").first.find("0.5"), std::string::npos) << ZUnits("0.5 m").first;
    EXPECT_DOUBLE_EQ(ZUnits("ft").second, 0.3048);  // the database defines it as 12 in, 2.54 cm
    EXPECT_DOUBLE_EQ(_1Pascal("hPa"), 0.01);
}

TEST_F(CommaLocale, TimeUnitsWithFractionalSeconds) {
    const TimeReference t = ParseTimeUnits("seconds since 1970-01-01 00:00:00.5");
    EXPECT_EQ(Host::FileTimeToUInt64(t.BaseTime()), 116444736000000000u + 5'000'000u);
    EXPECT_EQ(ParseTimeUnits("hours since 2000-01-01 06:30:00 +05:30").ZoneOffsetSeconds(), 19800.0);
}

TEST_F(CommaLocale, WktNumbers) {
    const Host::GkObjectPtr wgs84(Host::gk_factory_geogcs(4326));
    ASSERT_TRUE(wgs84);
    std::string text;
    ASSERT_TRUE(Host::gk_object_to_string(Host::gk_geogcs_unit(wgs84.get()), text));
    EXPECT_EQ(text, "ANGLEUNIT[\"degree\",0.0174532925199433]");

    System::AttributeMap properties{{"grid_mapping_name", "transverse_mercator"s},
                                    {"scale_factor_at_central_meridian", 0.9996},
                                    {"longitude_of_central_meridian", 9.0},
                                    {"latitude_of_projection_origin", 0.0},
                                    {"false_easting", 500000.5},
                                    {"false_northing", 0.0}};
    ZorvoNetCDFDSG::NetCDFWorkspaceLog log;
    const std::string wkt = SpaceTimeReference("crs"s, properties, "", true, eVerticalDatumUnspecified, {}, log).WKT();
    EXPECT_NE(wkt.find("0.9996"), std::string::npos) << wkt;
    EXPECT_NE(wkt.find("500000.5"), std::string::npos) << wkt;
    EXPECT_EQ(wkt.find("0,9996"), std::string::npos) << wkt;
}

}  // namespace
