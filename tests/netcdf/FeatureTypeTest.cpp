#include <gtest/gtest.h>

#include <string>
#include <variant>

#include "netcdf/NcmetaFiles.h"

namespace {

using namespace ZorvoDSG;

TEST(ParseFeatureType, NamesAndCfRoleSpellingsIgnoringCase) {
    EXPECT_EQ(ParseFeatureType("point"), eFeaturePoint);
    EXPECT_EQ(ParseFeatureType("PROFILE_ID"), eFeatureProfile);
    EXPECT_EQ(ParseFeatureType("TimeSeries"), eFeatureTimeSeries);
    EXPECT_EQ(ParseFeatureType("timeseries_id"), eFeatureTimeSeries);
    EXPECT_EQ(ParseFeatureType("trajectory_id"), eFeatureTrajectory);
    EXPECT_EQ(ParseFeatureType("timeSeriesProfile"), eFeatureTimeSeriesProfile);
    EXPECT_EQ(ParseFeatureType("TrajectoryProfile"), eFeatureTrajectoryProfile);
    EXPECT_EQ(ParseFeatureType("timeseries_profile"), eFeatureUnknown);
    EXPECT_EQ(ParseFeatureType(""), eFeatureUnknown);
    EXPECT_EQ(ParseFeatureType("point "), eFeatureUnknown);
}

TEST(FeatureTypeName, TableNamesAndUnknown) {
    EXPECT_EQ(FeatureTypeName(eFeatureTimeSeries), "timeSeries");
    EXPECT_EQ(FeatureTypeName(eFeatureTrajectoryProfile), "trajectoryProfile");
    EXPECT_EQ(FeatureTypeName(eFeatureUnknown), "unknown");
    EXPECT_EQ(FeatureTypeName(static_cast<eFeatureType>(7)), "unknown");
    for (int type = 1; type <= 6; ++type) {
        EXPECT_EQ(ParseFeatureType(FeatureTypeName(static_cast<eFeatureType>(type))), type);
    }
}

class GlobalMetadataTest : public NcmetaTest::UnitsTest {
protected:
    std::shared_ptr<ZorvoNetCDFDSG::NetCDFFile> WithGlobal(const std::string& name, const std::string& value,
                                                           const std::string& type = "string") {
        return Open("ncmeta_assumed.nc", NcmetaTest::NcML("<attribute name=\"" + name + "\" type=\"" + type +
                                                          "\" value=\"" + value + "\"/>"));
    }
    static std::pair<int, int> Version(const ZorvoNetCDFDSG::NetCDFFile& file) {
        const VersionNumber version = file.CFConventionsVersion();
        return {version.major, version.minor};
    }
};

TEST_F(GlobalMetadataTest, CFConventionsVersion) {
    using V = std::pair<int, int>;
    EXPECT_EQ(Version(*Open("ncmeta_assumed.nc")), V(0, 0));
    EXPECT_EQ(Version(*WithGlobal("Conventions", "CF-1.10")), V(1, 10));
    EXPECT_EQ(Version(*WithGlobal("Conventions", "cf-1.8")), V(1, 8));
    EXPECT_EQ(Version(*WithGlobal("Conventions", "CF-1.7,ACDD-1.3")), V(1, 7));
    EXPECT_EQ(Version(*WithGlobal("Conventions", "ACDD-1.3  CF-1.6")), V(1, 6));
    EXPECT_EQ(Version(*WithGlobal("Conventions", "COARDS")), V(0, 0));
    EXPECT_EQ(Version(*WithGlobal("Conventions", "CF-1")), V(0, 0));
    EXPECT_THROW(WithGlobal("Conventions", "1", "int")->CFConventionsVersion(), std::bad_variant_access);
}

TEST_F(GlobalMetadataTest, FeatureTypeAttribute) {
    EXPECT_EQ(Open("ncmeta_assumed.nc")->FeatureType(), eFeatureUnknown);
    EXPECT_EQ(WithGlobal("featureType", "TimeSeries")->FeatureType(), eFeatureTimeSeries);
    EXPECT_EQ(WithGlobal("featureType", "timeseries_profile")->FeatureType(), eFeatureUnknown);
    EXPECT_THROW(WithGlobal("featureType", "2", "short")->FeatureType(), std::bad_variant_access);
}

// A netCDF-4 string attribute is stored with a line feed after its value.
TEST_F(GlobalMetadataTest, StringTypedGlobalAttributes) {
    const auto file = Open("ncmeta_string_globals.nc");
    EXPECT_EQ(std::get<std::string>(file->GlobalAttribute("featureType")), "trajectory\n");
    EXPECT_EQ(file->FeatureType(), eFeatureTrajectory);
    EXPECT_EQ(Version(*file), std::make_pair(1, 9));
}

}  // namespace
