// `zdsg inspect` and `zdsg features` on the corpus of real DSG files: every file read or refused,
// none crashing.

#include <gtest/gtest.h>

#include <algorithm>
#include <regex>
#include <set>
#include <sstream>

#include "FeaturesOutput.h"
#include "ToolRunner.h"

namespace fs = std::filesystem;

TEST(InspectCorpus, EveryFileIsReadOrRefused) {
    const fs::path corpus(ZDSG_CORPUS_DIR);
    if (!fs::is_directory(corpus)) {
        GTEST_SKIP() << "no corpus at " << corpus;
    }
    size_t expected = 0;
    for (const auto& entry : fs::recursive_directory_iterator(corpus)) {
        const auto extension = entry.path().extension();
        expected += entry.is_regular_file() && (extension == ".nc" || extension == ".nc4") ? 1 : 0;
    }

    const ToolRun run = RunTool({"inspect", "--json", "--recursive", corpus.string()});
    ASSERT_FALSE(run.timedOut);
    ASSERT_EQ(run.signal, 0) << run.err;
    ASSERT_TRUE(run.exitStatus == 0 || run.exitStatus == 1) << run.exitStatus << run.err;
    rapidjson::Document document;
    ASSERT_TRUE(ParseJson(run, document));
    ASSERT_EQ(document["files"].Size(), expected);
    size_t refused = 0;
    for (const auto& file : document["files"].GetArray()) {
        const std::string status = file["status"].GetString();
        ASSERT_TRUE(status == "read" || status == "refused") << status;
        if (status == "refused") {
            ++refused;
            EXPECT_TRUE(file["error"].IsString());
        } else {
            EXPECT_GE(file["datasets"].Size(), 1u) << file["path"].GetString();
        }
    }
    EXPECT_EQ(run.exitStatus, refused == 0 ? 0 : 1);

    // The text report of the same files ends the same way.
    const ToolRun text = RunTool({"inspect", "--recursive", corpus.string()});
    EXPECT_EQ(text.signal, 0);
    EXPECT_EQ(text.exitStatus, run.exitStatus);
}

TEST(FeaturesCorpus, EveryFileYieldsFeaturesOrADocumentedRefusal) {
    const fs::path corpus(ZDSG_CORPUS_DIR);
    if (!fs::is_directory(corpus)) {
        GTEST_SKIP() << "no corpus at " << corpus;
    }
    const ToolRun run = RunTool({"features", "--format", "geojson", "--recursive", corpus.string()});
    ASSERT_FALSE(run.timedOut);
    ASSERT_EQ(run.signal, 0) << run.err;
    ASSERT_TRUE(run.exitStatus == 0 || run.exitStatus == 1) << run.exitStatus << run.err;
    rapidjson::Document features;
    ASSERT_TRUE(ParseGeoJsonOutput(run.out, false, features));

    // Each refusal names its file and a library error code by name (or netCDF-C's own status text).
    const std::regex refusal("zdsg: (.+?)(, group [^:]+)?: (e[A-Za-z]+: |NetCDF: ).*");
    std::set<std::string> refused;
    std::istringstream lines(run.err);
    for (std::string line; std::getline(lines, line);) {
        std::smatch match;
        ASSERT_TRUE(std::regex_match(line, match, refusal)) << line;
        refused.insert(match[1]);
    }
    std::set<std::string> classes;
    for (const auto& feature : features.GetArray()) {
        classes.insert(feature["properties"]["class"].GetString());
    }
    for (const auto& entry : fs::recursive_directory_iterator(corpus)) {
        const auto extension = entry.path().extension();
        if (!entry.is_regular_file() || (extension != ".nc" && extension != ".nc4")) {
            continue;
        }
        const std::string stem = entry.path().stem().string();
        const bool bFeatures = std::any_of(classes.begin(), classes.end(),
                                           [&stem](const std::string& name) { return name.rfind(stem + "_", 0) == 0; });
        EXPECT_TRUE(bFeatures || refused.count(entry.path().string()) == 1) << entry.path();
    }
    EXPECT_EQ(run.exitStatus, refused.empty() ? 0 : 1);
}
