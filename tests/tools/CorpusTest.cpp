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

    // Read as ISO 8601 (the tool's default), no file is refused for its time units; strictly, some
    // files are refused for the "Z" after their reference time, and every file refused as ISO still is.
    const ToolRun strict = RunTool({"inspect", "--json", "--recursive", "--strict-time-units", corpus.string()});
    rapidjson::Document strictDocument;
    ASSERT_TRUE(ParseJson(strict, strictDocument));
    ASSERT_EQ(strictDocument["files"].Size(), expected);
    size_t refusedForZ = 0;
    for (rapidjson::SizeType i = 0; i < expected; ++i) {
        const auto& iso = document["files"][i];
        const auto& file = strictDocument["files"][i];
        const std::string isoError = iso["error"].IsString() ? iso["error"].GetString() : "";
        EXPECT_EQ(isoError.find("eBadTime"), std::string::npos) << isoError;
        if (std::string(file["status"].GetString()) == "refused") {
            refusedForZ += std::string(file["error"].GetString()).starts_with("eBadTimeZoneOffset") ? 1 : 0;
        } else {
            EXPECT_STREQ(iso["status"].GetString(), "read") << iso["path"].GetString();
        }
    }
    EXPECT_GT(refusedForZ, 0u);

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

    // Each refusal names its file and says why.
    const std::regex refusal("zdsg: (.+?)(, group [^:]+)?: .+");
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
