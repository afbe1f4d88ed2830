// Connections from many threads: eight threads connect and disconnect in a loop while a ninth searches
// every class of the workspace. A thread that holds a connection must always find the files open, the
// searches must see every feature, and once everybody has disconnected the files must be closed.

#include <gtest/gtest.h>

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <thread>
#include <vector>

#include <unistd.h>

#include <zorvodsg/cursor/IFeatureCursor.h>
#include <zorvodsg/cursor/SpatialFilter.h>
#include <zorvodsg/spacetime/UnitSystem.h>
#include <zorvodsg/workspace/NetCDFWorkspace.h>

namespace {

using ZorvoNetCDFDSG::NetCDFWorkspace;

bool bEveryFileOpen(const NetCDFWorkspace& workspace) {
    for (const auto& record : workspace.FileRecords()) {
        try {
            record.file->NcID();
        } catch (const std::exception&) {
            return false;
        }
    }
    return true;
}

bool bEveryFileClosed(const NetCDFWorkspace& workspace) {
    for (const auto& record : workspace.FileRecords()) {
        try {
            record.file->NcID();
            return false;
        } catch (const std::exception&) {
        }
    }
    return true;
}

uint64_t CountFeatures(NetCDFWorkspace& workspace) {
    uint64_t cFeatures = 0;
    for (const auto& featureClass : workspace.BasicFeatureClasses(ZorvoDSG::eFeatureUnknown)) {
        const auto cursor = featureClass->Search(ZorvoDSG::SpatialFilter());
        const auto feature = cursor->CreateEmptyFeature();
        while (cursor->QueryNext(feature)) {
            ++cFeatures;
        }
    }
    return cFeatures;
}

TEST(WorkspaceThreads, FilesAreOpenExactlyWhileConnected) {
    ZorvoDSG::s_InitUDUnits2(ZDSG_UDUNITS2_XML);
    const auto directory = std::filesystem::temp_directory_path() / ("zdsg_ws_threads_" + std::to_string(::getpid()));
    std::filesystem::remove_all(directory);
    const auto workspace = NetCDFWorkspace::s_Create(directory);
    for (const char* name : {"point_observations.nc", "profile_orthogonal_nc4.nc", "two_groups.nc",
                             "trajectory_contiguous.nc"}) {
        workspace->AddFile(std::filesystem::path(ZDSG_EXAMPLES_DIR) / name, ZorvoDSG::eFeatureUnknown, nullptr);
    }
    workspace->Connect();
    const uint64_t cExpected = CountFeatures(*workspace);
    workspace->Disconnect();
    ASSERT_TRUE(bEveryFileClosed(*workspace));

    std::atomic<int> cClosedWhileConnected{0};
    std::atomic<int> cWrongCounts{0};
    std::atomic<bool> bSearching{true};
    std::vector<std::thread> threads;
    for (int t = 0; t < 8; ++t) {
        threads.emplace_back([&] {
            for (int i = 0; i < 300 || bSearching.load(); ++i) {
                workspace->Connect();
                if (!bEveryFileOpen(*workspace)) {
                    ++cClosedWhileConnected;
                }
                workspace->Disconnect();
            }
        });
    }
    threads.emplace_back([&] {
        for (int i = 0; i < 20; ++i) {
            workspace->Connect();
            if (CountFeatures(*workspace) != cExpected) {
                ++cWrongCounts;
            }
            workspace->Disconnect();
        }
        bSearching = false;
    });
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(cClosedWhileConnected.load(), 0);
    EXPECT_EQ(cWrongCounts.load(), 0);
    EXPECT_EQ(workspace->cConnections(), 0u);
    EXPECT_TRUE(bEveryFileClosed(*workspace));
    workspace->Delete();
    EXPECT_FALSE(std::filesystem::exists(directory));
}

}  // namespace
