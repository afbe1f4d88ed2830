// `zdsg workspace` end to end: a catalogue made, extended, listed, queried, pruned and reconciled
// across separate runs, and every file of the corpus added or refused with its reason.

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include "ToolRunner.h"

namespace fs = std::filesystem;

namespace {

ToolRun Workspace(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), "workspace");
    return RunTool(arguments);
}

std::string Fixture(const std::string& name) { return std::string(ZDSG_TEST_DATA_DIR) + "/" + name; }

// Stdout of a --json run as one JSON object.
bool ParseObject(const ToolRun& run, rapidjson::Document& document) {
    EXPECT_EQ(run.exitStatus, 0) << run.err;
    document.Parse(run.out.c_str(), run.out.size());
    EXPECT_FALSE(document.HasParseError()) << run.out;
    return !document.HasParseError() && document.IsObject();
}

TEST(WorkspaceCommand, ACatalogueSurvivesFromRunToRun) {
    const fs::path root = ScratchDirectory("workspace_session");
    const std::string ws = (root / "ws").string();
    EXPECT_EQ(Workspace({"create", ws}).exitStatus, 0);
    EXPECT_EQ(Workspace({"create", ws}).exitStatus, 1);  // exists

    fs::create_directories(root / "data" / "sub");
    fs::copy_file(ExamplePath("point_observations.nc"), root / "data" / "a.nc");
    fs::copy_file(ExamplePath("profile_orthogonal.nc"), root / "data" / "sub" / "b.nc");
    ToolRun run = Workspace({"add", ws, (root / "data").string(), "--recursive"});
    EXPECT_EQ(run.exitStatus, 0) << run.err;
    run = Workspace({"add", ws, ExamplePath("two_groups.nc").string()});
    EXPECT_EQ(run.exitStatus, 0) << run.err;

    run = Workspace({"list", ws, "--json"});
    rapidjson::Document list;
    ASSERT_TRUE(ParseObject(run, list));
    EXPECT_EQ(list["entries"].Size(), 2u);
    ASSERT_EQ(list["datasets"].Size(), 4u);  // a.nc, b.nc and the two groups
    EXPECT_STREQ(list["datasets"][0]["featureClasses"][0]["name"].GetString(), "two_groups_ship_point");

    run = Workspace({"query", ws, "--type", "point", "--json"});
    rapidjson::Document query;
    ASSERT_TRUE(ParseObject(run, query));
    EXPECT_EQ(query["featureClasses"].Size(), 2u);
    run = Workspace({"query", ws, "--name", "A_POINT"});
    EXPECT_EQ(run.exitStatus, 0) << run.err;
    EXPECT_NE(run.out.find("sst, wind_speed"), std::string::npos) << run.out;
    EXPECT_EQ(Workspace({"query", ws, "--type", "point", "--name", "x"}).exitStatus, 2);

    fs::remove(root / "data" / "sub" / "b.nc");
    run = Workspace({"reconcile", ws});
    EXPECT_EQ(run.exitStatus, 0) << run.err;
    EXPECT_NE(run.out.find("removed " + (root / "data" / "sub" / "b.nc").string()), std::string::npos) << run.out;

    // A file reached only through the directory entry would come back with the next scan.
    run = Workspace({"remove", ws, (root / "data" / "a.nc").string()});
    EXPECT_EQ(run.exitStatus, 1);
    EXPECT_NE(run.err.find("directory entry " + (root / "data").string()), std::string::npos) << run.err;
    run = Workspace({"remove", ws, ExamplePath("two_groups.nc").string() + "/"});
    EXPECT_EQ(run.exitStatus, 0) << run.err;
    EXPECT_EQ(Workspace({"remove", ws, "/nowhere.nc"}).exitStatus, 1);
    run = Workspace({"list", ws, "--json"});
    ASSERT_TRUE(ParseObject(run, list));
    EXPECT_EQ(list["entries"].Size(), 1u);
    EXPECT_EQ(list["datasets"].Size(), 1u);
}

TEST(WorkspaceCommand, ConcurrentRunsKeepEveryEntry) {
    const fs::path root = ScratchDirectory("workspace_concurrent");
    const std::string ws = (root / "ws").string();
    ASSERT_EQ(Workspace({"create", ws}).exitStatus, 0);
    constexpr int cRuns = 6;
    std::vector<ToolRun> runs(cRuns);
    std::vector<std::thread> threads;
    for (int i = 0; i < cRuns; ++i) {
        const fs::path file = root / ("f" + std::to_string(i) + ".nc");
        fs::copy_file(ExamplePath("point_observations.nc"), file);
        threads.emplace_back([&runs, i, ws, file] { runs[i] = Workspace({"add", ws, file.string()}); });
    }
    for (auto& thread : threads) {
        thread.join();
    }
    for (const auto& run : runs) {
        EXPECT_EQ(run.exitStatus, 0) << run.err;
    }
    rapidjson::Document list;
    ASSERT_TRUE(ParseObject(Workspace({"list", ws, "--json"}), list));
    EXPECT_EQ(list["entries"].Size(), static_cast<unsigned>(cRuns));
}

TEST(WorkspaceCommand, RefusedFilesAreReportedAndTheRestIsKept) {
    const fs::path root = ScratchDirectory("workspace_refusals");
    const std::string ws = (root / "ws").string();
    ASSERT_EQ(Workspace({"create", ws}).exitStatus, 0);
    fs::create_directories(root / "data");
    fs::copy_file(ExamplePath("point_observations.nc"), root / "data" / "a.nc");
    fs::copy_file(Fixture("ws_nodsg.nc"), root / "data" / "b.nc");
    WriteFile(root / "data" / "c.nc", "not netCDF");
    const ToolRun run = Workspace({"add", ws, (root / "data").string()});
    EXPECT_EQ(run.exitStatus, 1);
    EXPECT_NE(run.err.find("b.nc: "), std::string::npos) << run.err;
    EXPECT_NE(run.err.find("c.nc: "), std::string::npos) << run.err;
    EXPECT_NE(run.out.find("datasets added: 1"), std::string::npos) << run.out;
    // A directory that is not a workspace is not made one by accident.
    EXPECT_EQ(Workspace({"add", (root / "data").string(), ExamplePath("point_observations.nc").string()}).exitStatus,
              1);
    EXPECT_FALSE(fs::exists(root / "data" / "conf.json"));
}

TEST(WorkspaceCommand, EveryCorpusFileIsAddedOrRefusedWithAReason) {
    const fs::path corpus = fs::path(ZDSG_CORPUS_DIR);
    if (!fs::is_directory(corpus)) {
        GTEST_SKIP() << "no corpus at " << corpus;
    }
    const std::string ws = (ScratchDirectory("workspace_corpus") / "ws").string();
    ASSERT_EQ(Workspace({"create", ws}).exitStatus, 0);
    const ToolRun add = Workspace({"add", ws, corpus.string(), "--recursive"});
    ASSERT_TRUE(add.exitStatus == 0 || add.exitStatus == 1) << add.err;
    EXPECT_EQ(add.signal, 0);
    rapidjson::Document list;
    const ToolRun listed = Workspace({"list", ws, "--json"});
    list.Parse(listed.out.c_str(), listed.out.size());
    ASSERT_FALSE(list.HasParseError()) << listed.out;  // exit 1 when some entry's file is refused
    EXPECT_GT(list["datasets"].Size(), 0u);
    // Every line on stderr names a file and why it was refused.
    size_t start = 0;
    while (start < add.err.size()) {
        const size_t end = add.err.find('\n', start);
        const std::string line = add.err.substr(start, end - start);
        EXPECT_EQ(line.rfind("zdsg: ", 0), 0u) << line;
        EXPECT_NE(line.find(": ", 6), std::string::npos) << line;
        start = end == std::string::npos ? add.err.size() : end + 1;
    }
}

}  // namespace
