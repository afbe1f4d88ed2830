// `zdsg inspect` reads time units as ISO 8601 unless --strict-time-units asks for the library's
// default reading, and says in both reports which reading it used.

#include <gtest/gtest.h>

#include <string>

#include "ToolRunner.h"

namespace {

const std::string kFile = ZDSG_TOOL_TEST_DATA_DIR "/iso_time_units.nc";

std::string BaseTime(const rapidjson::Value& dataset, const std::string& name) {
    const rapidjson::Value* variable = FindVariable(dataset, name);
    if (variable == nullptr || !(*variable)["coordinate"].IsObject()) {
        return "<no coordinate>";
    }
    const auto& baseTime = (*variable)["coordinate"]["baseTime"];
    return baseTime.IsString() ? baseTime.GetString() : "<no base time>";
}

TEST(InspectTimeUnits, IsoReadingByDefault) {
    const ToolRun run = RunTool({"inspect", "--json", kFile});
    ASSERT_EQ(run.exitStatus, 0) << run.err;
    rapidjson::Document document;
    ASSERT_TRUE(ParseJson(run, document));
    EXPECT_STREQ(document["zdsg"]["timeUnits"].GetString(), "iso8601");
    const rapidjson::Value* dataset = FindDataset(document, "iso_time_units");
    ASSERT_NE(dataset, nullptr);
    EXPECT_EQ(BaseTime(*dataset, "time"), "1990-01-01T00:00:00Z");
    EXPECT_EQ(BaseTime(*dataset, "local_time"), "2021-06-01T01:00:00Z");  // 02:00 at +01:00

    const ToolRun text = RunTool({"inspect", kFile});
    EXPECT_EQ(text.exitStatus, 0);
    EXPECT_NE(text.out.find("time units: ISO 8601 reading\n"), std::string::npos) << text.out;
}

TEST(InspectTimeUnits, StrictReadingOnRequest) {
    const ToolRun run = RunTool({"inspect", "--json", "--strict-time-units", kFile});
    EXPECT_EQ(run.exitStatus, 1) << run.err;
    rapidjson::Document document;
    ASSERT_TRUE(ParseJson(run, document));
    EXPECT_STREQ(document["zdsg"]["timeUnits"].GetString(), "strict");
    const auto& file = document["files"][0];
    EXPECT_STREQ(file["status"].GetString(), "refused");
    EXPECT_NE(std::string(file["error"].GetString()).find("eBadTimeZoneOffset"), std::string::npos)
        << file["error"].GetString();

    const ToolRun text = RunTool({"inspect", "--strict-time-units", kFile});
    EXPECT_EQ(text.exitStatus, 1);
    EXPECT_NE(text.out.find("time units: strict reading"), std::string::npos) << text.out;
}

}  // namespace
