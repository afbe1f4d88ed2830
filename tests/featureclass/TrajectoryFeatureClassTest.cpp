// Trajectory schemas in each layout, and the files the trajectory class refuses.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "cursor/FeatureTestSupport.h"
#include <zorvodsg/featureclass/BasicTrajectoryFeatureClass.h>
#include <zorvodsg/host/Utf8.h>
#include <zorvodsg/values/Exception.h>
#include <zorvodsg/values/LogCodes.h>

using namespace ZorvoDSG;
using feature_test::DataPath;

namespace {

std::shared_ptr<BasicTrajectoryFeatureClass> OpenTrajectory(const std::string& file) {
    auto trajectoryClass = std::dynamic_pointer_cast<BasicTrajectoryFeatureClass>(feature_test::OpenClass(DataPath(file)));
    EXPECT_TRUE(trajectoryClass);
    return trajectoryClass;
}

template <class V>
std::vector<std::string> Names(const std::vector<V>& variables) {
    std::vector<std::string> names;
    for (const V& variable : variables) {
        names.push_back(variable.Name());
    }
    return names;
}

// The texts of the schema messages of one code.
std::vector<std::wstring> Logged(const BasicFeatureClass& featureClass, long code) {
    std::vector<std::wstring> texts;
    for (const auto& message : const_cast<System::ILog&>(*featureClass.OpeningLog()).FindMessageRange(code, code)) {
        texts.push_back(message.Text());
    }
    return texts;
}

long DimId(BasicFeatureClass& featureClass, const std::string& name) {
    return featureClass.CFMetadata()->Name2Dim().at(name);
}

std::string Variant(const ::testing::TestParamInfo<std::string>& info) {
    return info.param.find("_nc4") != std::string::npos ? "netcdf4" : "classic";
}

class TrajectorySchemaTest : public ::testing::TestWithParam<std::string> {};

}  // namespace

TEST_P(TrajectorySchemaTest, RaggedLayout) {
    auto trajectories = OpenTrajectory("traj_ragged" + GetParam());
    EXPECT_EQ(trajectories->Name(), "traj_ragged" + GetParam().substr(0, GetParam().size() - 3) + "_trajectory");
    EXPECT_EQ(trajectories->FeatureType(), eFeatureTrajectory);
    EXPECT_EQ(trajectories->Layout(), eLayoutCRA);
    EXPECT_EQ(trajectories->cFeatures(), 4u);
    EXPECT_TRUE(trajectories->bHasZs());
    EXPECT_EQ(trajectories->OIDVar().Name(), "trajectory_name");
    // Chosen by the dimension of X, although sensor_rows comes first.
    EXPECT_EQ(trajectories->CFMetadata()->GetVariable(trajectories->idRowSizeVar()).Name(), "rows");
    EXPECT_EQ(trajectories->idObservationDim(), DimId(*trajectories, "obs"));
    EXPECT_EQ(Names(trajectories->InstanceVariables()), std::vector<std::string>{"deployment"});

    // The ancillary flag joins the trajectory's own list, counted like the variable naming it;
    // spectrum has a second axis and is left out.
    const auto& observations = trajectories->ObservationVariables();
    EXPECT_EQ(Names(observations), (std::vector<std::string>{"salinity", "temp", "pressure", "temp_qc"}));
    EXPECT_EQ(observations[0].idSampleDim(), DimId(*trajectories, "sensor_obs"));
    EXPECT_EQ(observations[3].idRowCountVar(), trajectories->idRowSizeVar());
    EXPECT_EQ(observations[3].idSampleDim(), trajectories->idObservationDim());
    EXPECT_EQ(trajectories->ObservationVariable("temp_qc").Name(), "temp_qc");
    EXPECT_EQ(Logged(*trajectories, System::eLogVariableTooManyDimensions), std::vector<std::wstring>{L"spectrum"});
}

TEST_P(TrajectorySchemaTest, MultidimensionalLayoutInEitherOrder) {
    for (const std::string stem : {"traj_ortho", "traj_ortho_transposed"}) {
        auto trajectories = OpenTrajectory(stem + GetParam());
        EXPECT_EQ(trajectories->Layout(), eLayoutOrthoMD) << stem;
        EXPECT_EQ(trajectories->cFeatures(), 3u);
        EXPECT_FALSE(trajectories->bHasZs());
        EXPECT_EQ(trajectories->idRowSizeVar(), -1);
        EXPECT_EQ(trajectories->idInstanceDim(), DimId(*trajectories, "trajectory"));
        EXPECT_EQ(trajectories->idObservationDim(), DimId(*trajectories, "obs")) << stem;
        EXPECT_EQ(Names(trajectories->InstanceVariables()), std::vector<std::string>{"platform"});
        // heading has coordinates but no observation axis: neither an observation nor an instance variable.
        EXPECT_EQ(Names(trajectories->ObservationVariables()), (std::vector<std::string>{"speed", "flag"}));
        EXPECT_EQ(Logged(*trajectories, System::eLogVariableTooManyDimensions), std::vector<std::wstring>{L"heading"});
    }
}

TEST_P(TrajectorySchemaTest, SingleInstanceWithCharacterName) {
    auto trajectory = OpenTrajectory("traj_single" + GetParam());
    EXPECT_EQ(trajectory->Layout(), eLayoutSingleInstance);
    EXPECT_EQ(trajectory->cFeatures(), 1u);
    EXPECT_EQ(trajectory->idInstanceDim(), -1);
    EXPECT_EQ(trajectory->idObservationDim(), DimId(*trajectory, "obs"));
    EXPECT_TRUE(trajectory->OIDVar().IsStringScalar());
    EXPECT_EQ(Names(trajectory->InstanceVariables()), std::vector<std::string>{"platform"});
    EXPECT_EQ(Names(trajectory->ObservationVariables()), (std::vector<std::string>{"temp", "label"}));
    EXPECT_TRUE(trajectory->bHasZs());
}

INSTANTIATE_TEST_SUITE_P(ClassicAndNetCDF4, TrajectorySchemaTest, ::testing::Values(".nc", "_nc4.nc"), Variant);

namespace {

struct Refusal {
    const char* stem;
    long code;
    const wchar_t* detail;  // a part of the detail
};

class TrajectoryRefusalTest : public ::testing::TestWithParam<std::tuple<Refusal, std::string>> {};

}  // namespace

TEST_P(TrajectoryRefusalTest, RefusedWithItsCode) {
    const auto& [refusal, suffix] = GetParam();
    try {
        feature_test::OpenClass(DataPath(refusal.stem + suffix));
        FAIL() << refusal.stem << " opened";
    } catch (const Exception& e) {
        EXPECT_EQ(e.NcErr(), refusal.code) << refusal.stem;
        EXPECT_NE(e.wsDetail().find(refusal.detail), std::wstring::npos) << Host::WideToUtf8(e.wsDetail());
    }
}

INSTANTIATE_TEST_SUITE_P(
    Files, TrajectoryRefusalTest,
    ::testing::Combine(::testing::Values(Refusal{"traj_shared_x", eInstanceDimensionMismatch, L"lon"},
                                         Refusal{"traj_time_shape", eInstanceDimensionMismatch, L"time"},
                                         Refusal{"traj_indexed", eInstanceDimensionMismatch, L"indexed ragged"},
                                         Refusal{"traj_ragged_nocoords", eNoObservationVariables, L""},
                                         Refusal{"traj_vertical_types", eSRConflict, L"vertical_crs_definition"},
                                         Refusal{"traj_no_time", eMissingCoordinates, L"T"}),
                       ::testing::Values(".nc", "_nc4.nc")),
    [](const auto& test) {
        return std::string(std::get<0>(test.param).stem) +
               (std::get<1>(test.param) == ".nc" ? "_classic" : "_netcdf4");
    });
