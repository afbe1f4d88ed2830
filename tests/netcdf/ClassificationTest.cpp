#include <gtest/gtest.h>

#include <string>
#include <variant>

#include "netcdf/NcmetaFiles.h"
#include <zorvodsg/values/Exception.h>

using ZorvoDSG::Host::FileTimeToUInt64;

namespace {

using namespace ZorvoDSG::SpaceTime;
using ZorvoDSG::CoordinateVariableId;
using ZorvoNetCDFDSG::NetCDFFile;

class ClassificationTest : public NcmetaTest::UnitsTest {
protected:
    void SetUp() override { file = Open("ncmeta_classify.nc"); }

    const CoordinateVariableId* Coord(const std::string& key) const {
        const auto& map = file->Name2CoordVar();
        const auto it = map.find(key);
        return it == map.end() ? nullptr : &it->second;
    }
    long Id(const std::string& name) const { return file->Name2Var().at(name); }

    void ExpectRole(const std::string& name, eCoordinateRole role) const {
        const CoordinateVariableId* coord = Coord(name);
        ASSERT_NE(coord, nullptr) << name;
        EXPECT_EQ(coord->role, role) << name;
        EXPECT_EQ(coord->id, Id(name)) << name;
    }
    void ExpectZ(const std::string& name, bool bZUp, eVerticalDatumModel model) const {
        ExpectRole(name, eCoordinateZ);
        EXPECT_EQ(Coord(name)->bZUp, bZUp) << name;
        EXPECT_EQ(Coord(name)->verticalDatumModel, model) << name;
    }

    std::shared_ptr<NetCDFFile> file;
};

TEST_F(ClassificationTest, HorizontalByStandardNameAxisAndUnits) {
    ExpectRole("lat_x", eCoordinateY);  // latitude is tested before axis X
    ExpectRole("lon_upper", eCoordinateX);
    ExpectRole("y_north", eCoordinateY);
    ExpectRole("x_east", eCoordinateX);
    EXPECT_EQ(Coord("y_lower"), nullptr);  // axis is case-sensitive
    EXPECT_EQ(Coord("degrees"), nullptr);
    EXPECT_EQ(Coord("temp"), nullptr);
    EXPECT_TRUE(Coord("lat_x")->bZUp);
}

TEST_F(ClassificationTest, VerticalDirectionAndDatum) {
    ExpectZ("floor_depth", false, eVerticalDatumGeoid);
    ExpectZ("up_upper", false, eVerticalDatumUnspecified);  // only "up" is upward
    ExpectZ("ellipsoid_height", true, eVerticalDatumEllipsoid);
    ExpectZ("tide", true, eVerticalDatumMeanSeaLevel);
    ExpectZ("pressure", false, eVerticalDatumUnspecified);  // pressure ignores positive
    ExpectZ("pressure2", false, eVerticalDatumUnspecified);
    ExpectZ("ellipsoid_depth", false, eVerticalDatumEllipsoid);
    ExpectZ("geoid_height", true, eVerticalDatumGeoid);
    EXPECT_EQ(Coord("wave_height"), nullptr);  // a length without positive
}

TEST_F(ClassificationTest, TimeByAxisAndByConvertibleUnits) {
    ExpectRole("seconds", eCoordinateT);
    EXPECT_EQ(Coord("seconds")->timeReference.timeUnit(), eTimeSecond);
    EXPECT_EQ(FileTimeToUInt64(Coord("seconds")->timeReference.BaseTime()), 116444736000000000ULL);
    ExpectRole("t_axis", eCoordinateT);
    EXPECT_EQ(Coord("t_axis")->timeReference.timeUnit(), eTimeDay);
    EXPECT_EQ(Coord("tide")->timeReference.timeUnit(), eTimeNone);
}

TEST_F(ClassificationTest, StandardNameKeysFirstWins) {
    EXPECT_EQ(Coord("latitude"), nullptr);  // keys are the standard names as written
    ASSERT_NE(Coord("Latitude"), nullptr);
    EXPECT_EQ(Coord("Latitude")->id, Id("lat_x"));
    EXPECT_EQ(Coord("sea_water_pressure")->id, Id("pressure"));
    EXPECT_EQ(Coord("pressure2")->id, Id("pressure2"));
    // up_upper is the first classified variable without a standard name.
    ASSERT_NE(Coord(""), nullptr);
    EXPECT_EQ(Coord("")->id, Id("up_upper"));
}

TEST_F(ClassificationTest, OnlyUnparseableUnitsAreLogged) {
    const auto messages = Messages(11);
    ASSERT_EQ(messages.size(), 1u);
    EXPECT_EQ(messages[0].Text(), L"no_such_unit");
    EXPECT_EQ(Coord("bogus"), nullptr);
    EXPECT_EQ(log.cMessages(), 1);
}

using ClassificationFailureTest = NcmetaTest::UnitsTest;

std::string AddedVariable(const std::string& attributes) {
    return NcmetaTest::NcML("<variable name=\"added\">" + attributes + "</variable>");
}

TEST_F(ClassificationFailureTest, TimeWithoutUnitsAborts) {
    try {
        Open("ncmeta_classify.nc", AddedVariable(R"(<attribute name="standard_name" type="string" value="TIME"/>)"));
        FAIL() << "expected eAttributeNotPresent";
    } catch (const ZorvoDSG::Exception& e) {
        EXPECT_EQ(e.NcErr(), ZorvoDSG::eAttributeNotPresent);
    }
}

TEST_F(ClassificationFailureTest, PlainTimeUnitIsNoCoordinate) {
    const auto file = Open("ncmeta_classify.nc", AddedVariable(R"(<attribute name="units" type="string" value="s"/>)"));
    EXPECT_EQ(file->Name2CoordVar().count("added"), 0u);
}

TEST_F(ClassificationFailureTest, TimeUnitsTheParserRejectsAbort) {
    // UDUNITS-2 reads a year alone as a reference time; the time-units parser wants a whole date.
    try {
        Open("ncmeta_classify.nc", AddedVariable(R"(<attribute name="units" type="string" value="days since 1970"/>)"));
        FAIL() << "expected eBadTimeUnits";
    } catch (const ZorvoDSG::Exception& e) {
        EXPECT_EQ(e.NcErr(), ZorvoDSG::eBadTimeUnits);
    }
}

TEST_F(ClassificationFailureTest, NonTextPositiveIsBadVariantAccess) {
    EXPECT_THROW(Open("ncmeta_classify.nc", AddedVariable(R"(<attribute name="units" type="string" value="m"/>)"
                                                          R"(<attribute name="positive" type="int" value="1"/>)")),
                 std::bad_variant_access);
}

TEST(VerticalStandardNames, ListsIgnoreCase) {
    EXPECT_TRUE(NetCDFFile::s_IsEllipsoidHeight("Sea_Surface_Height_Above_Reference_Ellipsoid"));
    EXPECT_TRUE(NetCDFFile::s_IsGeoidHeight("GROUND_LEVEL_ALTITUDE"));
    EXPECT_TRUE(NetCDFFile::s_IsGeoidDepth("sea_floor_depth_below_mean_sea_level"));
    EXPECT_FALSE(NetCDFFile::s_IsGeoidDepth("depth"));
    eVerticalDatumModel model = eVerticalDatumMeanSeaLevel;
    EXPECT_FALSE(NetCDFFile::s_IsTidalHeight("sea_surface_height", model));
    EXPECT_EQ(model, eVerticalDatumUnspecified);
    EXPECT_TRUE(NetCDFFile::s_IsTidalHeight("tidal_sea_surface_height_above_lowest_astronomical_tide", model));
    EXPECT_EQ(model, eVerticalDatumLowestAstronomicalTide);
}

class AssumedGeographicTest : public NcmetaTest::UnitsTest {};

TEST_F(AssumedGeographicTest, AttachedToVariablesWithCoordinatesButNoGridMapping) {
    const auto file = Open("ncmeta_assumed.nc");
    const long id = file->Name2Var().at("zorvo_assumed_geographic");
    EXPECT_EQ(id, 6);  // after the six variables of the file
    EXPECT_EQ(std::get<std::string>(file->GetVariable(id).AttributeValue("epsg_code")), "EPSG:4326");
    EXPECT_EQ(std::get<std::string>(file->GetVariable("temp").AttributeValue("grid_mapping")),
              "zorvo_assumed_geographic");
    EXPECT_EQ(std::get<std::string>(file->GetVariable("sal").AttributeValue("grid_mapping")), "crs");
    EXPECT_FALSE(file->GetVariable("lat").HasAttribute("grid_mapping"));

    const auto messages = Messages(17);
    ASSERT_EQ(messages.size(), 2u);
    EXPECT_EQ(messages[0].Text(), L"temp");
    EXPECT_EQ(messages[1].Text(), L"oxy");
}

TEST_F(AssumedGeographicTest, NotCreatedWithoutCoordinates) {
    const auto file = Open("ncmeta_classify.nc");
    EXPECT_EQ(file->Name2Var().count("zorvo_assumed_geographic"), 0u);
    EXPECT_TRUE(Messages(17).empty());
}

TEST_F(AssumedGeographicTest, NcMLSeesTheSyntheticVariable) {
    const auto file = Open("ncmeta_assumed.nc", NcmetaTest::NcML(R"(<variable name="zorvo_assumed_geographic">)"
                                                                 R"(<remove type="attribute" name="epsg_code"/>)"
                                                                 "</variable>"));
    EXPECT_FALSE(file->GetVariable("zorvo_assumed_geographic").HasAttribute("epsg_code"));
    EXPECT_TRUE(Messages(15).empty());
}

}  // namespace
