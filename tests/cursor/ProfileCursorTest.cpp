// Profiles and time series searched end to end, in the orthogonal, single-instance, incomplete and
// contiguous ragged layouts.
#include <gtest/gtest.h>

#include <cmath>
#include <variant>

#include "cursor/FeatureTestSupport.h"
#include <zorvodsg/cursor/ProfileFeature.h>
#include <zorvodsg/cursor/detail/NetCDFCursorImpl.h>
#include <zorvodsg/featureclass/BasicProfileFeatureClass.h>
#include <zorvodsg/values/Exception.h>
#include <zorvodsg/values/LogCodes.h>

using namespace ZorvoDSG;
using feature_test::AllInstanceNames;
using feature_test::DataPath;
using feature_test::ExamplePath;
using feature_test::OpenClass;

namespace {

std::shared_ptr<BasicProfileFeatureClass> OpenProfiles(const std::filesystem::path& path) {
    auto profiles = std::dynamic_pointer_cast<BasicProfileFeatureClass>(OpenClass(path));
    EXPECT_TRUE(profiles);
    return profiles;
}

std::vector<std::string> ObservationNames(const BasicProfileFeatureClass& profiles) {
    std::vector<std::string> names;
    for (const auto& variable : profiles.ObservationVariables()) {
        names.push_back(variable.NameWithFullGroupName());
    }
    return names;
}

// Copies of every feature, with every instance and observation variable.
std::vector<ProfileFeature> ReadProfiles(BasicProfileFeatureClass& profiles, uint64_t blockSize = 0,
                                         Host::WKSEnvelopeZ envelope = Host::WKSEnvelopeZ()) {
    SpatialFilter filter(nullptr, SpaceTime::eSpatialRelationUndefined, envelope, AllInstanceNames(profiles),
                         ObservationNames(profiles));
    auto cursor = profiles.Search(filter);
    if (blockSize != 0) {
        dynamic_cast<ZorvoNetCDFDSG::NetCDFCursorImpl&>(*cursor).SetBlockSize(blockSize);
    }
    std::vector<ProfileFeature> features;
    auto feature = cursor->CreateEmptyFeature();
    while (cursor->QueryNext(feature)) {
        features.push_back(dynamic_cast<ProfileFeature&>(*feature));
    }
    return features;
}

std::vector<double> Values(const ProfileFeature& feature) {
    const auto& profile = feature.wksProfile();
    return std::vector<double>(profile.Values(), profile.Values() + profile.count);
}

long Code(const std::function<void()>& open) {
    try {
        open();
    } catch (const Exception& e) {
        return e.NcErr();
    }
    return 0;
}

}  // namespace

TEST(ProfileOrthogonalTest, ExampleCasts) {
    auto profiles = OpenProfiles(ExamplePath("profile_orthogonal.nc"));
    EXPECT_EQ(profiles->Name(), "profile_orthogonal_profile");
    EXPECT_EQ(profiles->Layout(), eLayoutOrthoMD);
    EXPECT_EQ(profiles->cFeatures(), 3u);
    EXPECT_EQ(ObservationNames(*profiles), (std::vector<std::string>{"temperature", "salinity"}));
    const auto features = ReadProfiles(*profiles);
    ASSERT_EQ(features.size(), 3u);
    EXPECT_EQ(std::get<int32_t>(features[1].OID()), 102);
    EXPECT_EQ(Values(features[0]), (std::vector<double>{0, 10, 25, 50}));
    EXPECT_FLOAT_EQ(static_cast<float>(features[1].wksProfile().x), -68.7f);
    EXPECT_DOUBLE_EQ(features[2].T_or_Z(), 18629.1);
    const auto& temperature = features[1].ObservationValues(0);
    ASSERT_EQ(temperature.Size(), 4);
    EXPECT_FLOAT_EQ(std::get<float>(temperature[0]), 12.4f);
    EXPECT_EQ(temperature[3].index(), System::eNcEmpty);  // fill value
    // Only the second cast lies east of -68.8.
    const auto east = ReadProfiles(*profiles, 0, Host::WKSEnvelopeZ(-68.8, 43, std::nan(""), -68.6, 44, std::nan("")));
    ASSERT_EQ(east.size(), 1u);
    EXPECT_EQ(east[0].InstanceID(), 1u);
}

TEST(ProfileOrthogonalTest, ZFilterFindsProfilesWrittenBottomUp) {
    auto profiles = OpenProfiles(DataPath("profile_single.nc"));
    // Depths 100, 50, 10: the Z range of the extent is ordered.
    const auto features = ReadProfiles(*profiles, 0, Host::WKSEnvelopeZ(160, -50, 20, 180, -30, 30));
    ASSERT_EQ(features.size(), 1u);
}

TEST(ProfileSingleInstanceTest, CharacterIdNamesTheOneFeature) {
    auto profiles = OpenProfiles(DataPath("profile_single.nc"));
    EXPECT_EQ(profiles->Layout(), eLayoutSingleInstance);
    EXPECT_EQ(profiles->cFeatures(), 1u);
    ASSERT_EQ(profiles->InstanceVariables().size(), 1u);
    EXPECT_EQ(profiles->InstanceVariables()[0].Name(), "cast_number");
    const auto features = ReadProfiles(*profiles);
    ASSERT_EQ(features.size(), 1u);
    EXPECT_EQ(std::get<std::string>(features[0].OID()), "cast-7");
    EXPECT_EQ(Values(features[0]), (std::vector<double>{100, 50, 10}));
    EXPECT_DOUBLE_EQ(features[0].T_or_Z(), 6.0);
    EXPECT_EQ(std::get<int32_t>(features[0].InstanceValue(0)), 7);
}

TEST(ProfileIncompleteTest, EachProfileHasItsOwnDepths) {
    auto profiles = OpenProfiles(DataPath("profile_incomplete.nc"));
    const auto features = ReadProfiles(*profiles);
    ASSERT_EQ(features.size(), 2u);
    EXPECT_EQ(Values(features[0]), (std::vector<double>{5, 15, 25}));
    EXPECT_EQ(Values(features[1]), (std::vector<double>{30, 10}));  // trailing fill cut
    EXPECT_EQ(features[1].ObservationValues(0).Size(), 3);
}

class TimeSeriesRaggedTest : public ::testing::TestWithParam<std::string> {};

TEST_P(TimeSeriesRaggedTest, StationsWithTheirRuns) {
    auto stations = OpenProfiles(DataPath(GetParam()));
    EXPECT_EQ(stations->FeatureType(), eFeatureTimeSeries);
    EXPECT_EQ(stations->Name().substr(stations->Name().size() - 11), "_timeSeries");
    EXPECT_EQ(stations->Layout(), eLayoutCRA);
    ASSERT_EQ(ObservationNames(*stations), (std::vector<std::string>{"temp", "temp_qc"}));
    ASSERT_EQ(stations->InstanceVariables().size(), 1u);  // station_elevation
    const auto log = stations->OpeningLog();
    EXPECT_EQ(const_cast<System::ILog&>(*log).FindMessageRange(System::eLogAncillaryVariableNotFound,
                                                                System::eLogAncillaryVariableNotFound).size(), 1u);
    for (const uint64_t block : {0u, 1u, 7u}) {
        const auto features = ReadProfiles(*stations, block);
        ASSERT_EQ(features.size(), 4u) << block;
        EXPECT_EQ(std::get<std::string>(features[2].OID()), "three");
        EXPECT_EQ(Values(features[0]), (std::vector<double>{0, 1}));
        EXPECT_TRUE(features[1].bEmpty());
        EXPECT_EQ(features[1].ObservationValues(0).Size(), 0);
        EXPECT_EQ(Values(features[2]), (std::vector<double>{0, 1, 2}));
        EXPECT_EQ(Values(features[3]), (std::vector<double>{5}));  // trailing fill time cut
        EXPECT_DOUBLE_EQ(features[3].T_or_Z(), 8.0);               // the station's z
        const auto& temp = features[2].ObservationValues(0);
        ASSERT_EQ(temp.Size(), 3);
        EXPECT_DOUBLE_EQ(std::get<float>(temp[0]), 10.0f);  // 20 * 0.5
        EXPECT_EQ(temp[1].index(), System::eNcEmpty);
        EXPECT_EQ(std::get<signed char>(features[3].ObservationValues(1)[1]), 9);
        EXPECT_EQ(std::get<int32_t>(features[3].InstanceValue(0)), 400);
    }
}

INSTANTIATE_TEST_SUITE_P(ClassicAndNetCDF4, TimeSeriesRaggedTest, ::testing::Values("ts_ragged.nc", "ts_ragged_nc4.nc"),
                         feature_test::FormatName);

TEST(TimeSeriesRaggedTest, BadRowSizesAreRefused) {
    for (const char* name : {"ts_ragged_negative.nc", "ts_ragged_toolong.nc", "ts_ragged_float.nc"}) {
        EXPECT_EQ(Code([&] { ReadProfiles(*OpenProfiles(DataPath(name))); }), eNotDSGConformant) << name;
    }
}

TEST(TimeSeriesProjectedTest, NativeEnvelopeSelectsOneStation) {
    auto stations = OpenProfiles(ExamplePath("timeseries_projected.nc"));
    EXPECT_NE(stations->NativeSpatialReference()->WKT().find("Transverse Mercator"), std::string::npos);
    const auto features = ReadProfiles(*stations, 0, Host::WKSEnvelopeZ(570000, 4800000, std::nan(""), 580000, 4830000, std::nan("")));
    ASSERT_EQ(features.size(), 1u);
    EXPECT_EQ(std::get<std::string>(features[0].OID()), "Split");
    EXPECT_EQ(Values(features[0]), (std::vector<double>{0, 10, 20, 30, 40}));
    EXPECT_TRUE(std::isnan(features[0].T_or_Z()));  // no vertical coordinate
}
