// Queries across the classes of a workspace: selection by type and by name and file, variable lists
// in the order of a compare method, and the query class that is never made.

#include <zorvodsg/workspace/NetCDFWorkspace.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>

#include <zorvodsg/featureclass/BasicObservationFeatureClass.h>
#include <zorvodsg/values/LogCodes.h>
#include "support/ScratchDir.h"
#include "workspace/WorkspaceTestSupport.h"

using ZorvoNetCDFDSG::NetCDFWorkspace;
using ::testing::ElementsAre;
using zdsg_test::Codes;
using zdsg_test::ExamplePath;

namespace {

class WorkspaceQueries : public zdsg_test::ScratchDirTest {
protected:
    void SetUp() override {
        ScratchDirTest::SetUp();
        m_workspace = NetCDFWorkspace::s_Create(m_dir / "ws");
        for (const char* name : {"point_observations.nc", "profile_orthogonal.nc", "two_groups.nc"}) {
            m_workspace->AddFile(ExamplePath(name), ZorvoDSG::eFeatureUnknown, nullptr);
        }
    }

    static std::vector<std::string> Names(const std::vector<std::shared_ptr<ZorvoDSG::BasicFeatureClass>>& classes) {
        std::vector<std::string> names;
        for (const auto& featureClass : classes) {
            names.push_back(featureClass->Name());
        }
        return names;
    }

    std::shared_ptr<NetCDFWorkspace> m_workspace;
};

TEST_F(WorkspaceQueries, ClassesByTypeInWorkspaceOrder) {
    EXPECT_THAT(Names(m_workspace->BasicFeatureClasses(ZorvoDSG::eFeatureUnknown)),
                ElementsAre("two_groups_ship_point", "two_groups_mooring_timeSeries", "profile_orthogonal_profile",
                            "point_observations_point"));
    EXPECT_THAT(Names(m_workspace->BasicFeatureClasses(ZorvoDSG::eFeaturePoint)),
                ElementsAre("two_groups_ship_point", "point_observations_point"));
    EXPECT_TRUE(m_workspace->BasicFeatureClasses(ZorvoDSG::eFeatureTrajectory).empty());
}

TEST_F(WorkspaceQueries, ClassesByNameIgnoreCaseAndMatchAFileByIdentity) {
    const auto viaOtherName = ExamplePath(".") / "point_observations.nc";
    EXPECT_THAT(Names(m_workspace->BasicFeatureClasses({{"POINT_observations_point", viaOtherName},
                                                         {"point_observations_point", {}},
                                                         {"two_groups_ship_point", {}},
                                                         {"nothing", {}}})),
                ElementsAre("two_groups_ship_point", "point_observations_point"));
    EXPECT_TRUE(m_workspace
                    ->BasicFeatureClasses(
                        {{"point_observations_point", ExamplePath("profile_orthogonal.nc")}})
                    .empty());
    EXPECT_THROW(m_workspace->BasicFeatureClasses({{"point_observations_point", ExamplePath("missing.nc")}}),
                 std::filesystem::filesystem_error);
}

TEST_F(WorkspaceQueries, VariableListsFollowTheCompareMethod) {
    const auto points = m_workspace->BasicFeatureClasses(ZorvoDSG::eFeaturePoint);
    const auto byFullName = m_workspace->CommonInstanceVars(points, 4);
    ASSERT_EQ(byFullName.size(), 2u);
    for (const auto& names : byFullName) {
        EXPECT_TRUE(std::is_sorted(names.begin(), names.end()));
        EXPECT_FALSE(names.empty());
    }
    // Type codes are compared as text ("10" before "5"), and equal codes keep the class's order.
    const auto byType = m_workspace->CommonInstanceVars(points, 8);
    for (size_t i = 0; i < points.size(); ++i) {
        std::vector<std::string> types;
        for (const std::string& name : byType[i]) {
            types.push_back(std::to_string(points[i]->InstanceVariable(name).Type()));
        }
        EXPECT_TRUE(std::is_sorted(types.begin(), types.end())) << points[i]->Name();
        EXPECT_EQ(byType[i].size(), byFullName[i].size());
    }

    std::vector<std::shared_ptr<ZorvoDSG::BasicObservationFeatureClass>> observed;
    for (const auto& featureClass : m_workspace->BasicFeatureClasses(ZorvoDSG::eFeatureProfile)) {
        observed.push_back(std::dynamic_pointer_cast<ZorvoDSG::BasicObservationFeatureClass>(featureClass));
    }
    const auto observations = m_workspace->CommonObservationVars(observed, 1);
    ASSERT_EQ(observations.size(), 1u);
    EXPECT_TRUE(std::is_sorted(observations[0].begin(), observations[0].end()));

    EXPECT_TRUE(m_workspace->CommonInstanceVars({}, 99).empty());
    EXPECT_THROW(m_workspace->CommonInstanceVars(points, 64), std::runtime_error);
}

TEST_F(WorkspaceQueries, AQueryClassIsNeverMadeAndTheLogSaysSo) {
    const auto result = m_workspace->TryMakeQueryFeatureClass("q", ZorvoDSG::eFeaturePoint, {}, {});
    ASSERT_TRUE(std::holds_alternative<std::shared_ptr<ZorvoDSG::System::ILog>>(result));
    const auto& log = *std::get<std::shared_ptr<ZorvoDSG::System::ILog>>(result);
    EXPECT_THAT(Codes(log), ElementsAre(ZorvoDSG::System::eLogQueryFeatureClass));
    EXPECT_THAT(Codes(m_workspace->CurrentLog()), ElementsAre(ZorvoDSG::System::eLogQueryFeatureClass));
    EXPECT_EQ(log.GetMessage(0).Text(), L"TryMakeQueryFeatureClass");
}

}  // namespace
