// `zdsg inspect --json` on the examples: one valid document holding every dataset, variable and role.

#include <gtest/gtest.h>

#include <map>
#include <string>

#include "ToolRunner.h"

namespace {

std::string Text(const rapidjson::Value& value) { return value.IsString() ? value.GetString() : "<not text>"; }

// Role of each variable as the report shows it: "X", "Y", "Z up", "Z down", "T <base time>", "-".
std::map<std::string, std::string> Roles(const rapidjson::Value& dataset) {
    std::map<std::string, std::string> roles;
    for (const auto& variable : dataset["variables"].GetArray()) {
        const auto& coordinate = variable["coordinate"];
        std::string role = "-";
        if (coordinate.IsObject()) {
            role = Text(coordinate["role"]);
            if (role == "Z") {
                role += " " + Text(coordinate["direction"]);
            } else if (role == "T") {
                role += " " + Text(coordinate["timeUnit"]) + " " + Text(coordinate["baseTime"]);
            }
        }
        roles[Text(variable["name"])] = role;
    }
    return roles;
}

class InspectJson : public ::testing::Test {
protected:
    void SetUp() override {
        run = RunTool({"inspect", "--json", ZDSG_EXAMPLES_DIR});
        ASSERT_EQ(run.exitStatus, 0) << run.err;
        ASSERT_TRUE(ParseJson(run, document));
    }

    const rapidjson::Value& Dataset(const std::string& name) {
        const rapidjson::Value* dataset = FindDataset(document, name);
        if (dataset == nullptr) {
            throw std::runtime_error("no dataset " + name);
        }
        return *dataset;
    }

    ToolRun run;
    rapidjson::Document document;
};

TEST_F(InspectJson, EveryExampleFileIsReadInSortedOrder) {
    std::vector<std::string> names;
    for (const auto& file : document["files"].GetArray()) {
        EXPECT_EQ(Text(file["status"]), "read") << Text(file["path"]);
        EXPECT_TRUE(file["error"].IsNull());
        names.push_back(std::filesystem::path(Text(file["path"])).filename().string());
    }
    const std::vector<std::string> expected{"point_observations.nc",     "point_observations_nc4.nc",
                                            "profile_orthogonal.nc",     "profile_orthogonal_nc4.nc",
                                            "timeseries_projected.nc",   "timeseries_projected_nc4.nc",
                                            "trajectory_contiguous.nc",  "trajectory_contiguous_nc4.nc",
                                            "two_groups.nc"};
    EXPECT_EQ(names, expected);
    const auto& summary = document["summary"];
    EXPECT_EQ(summary["files"].GetUint64(), 9u);
    EXPECT_EQ(summary["read"].GetUint64(), 9u);
    EXPECT_EQ(summary["refused"].GetUint64(), 0u);
    EXPECT_EQ(summary["datasets"].GetUint64(), 11u);  // two_groups: two data groups and the root
    EXPECT_TRUE(document["zdsg"]["udunits2"].IsString());
}

TEST_F(InspectJson, EveryVariableOfEveryDatasetIsListed) {
    using Names = std::vector<std::string>;
    const std::map<std::string, Names> expected{
        {"point_observations", {"time", "lat", "lon", "alt", "sst", "wind_speed", "zorvo_assumed_geographic"}},
        {"profile_orthogonal",
         {"profile_id", "time", "lat", "lon", "z", "temperature", "salinity", "zorvo_assumed_geographic"}},
        {"timeseries_projected", {"station_name", "x", "y", "time", "crs", "sea_level"}},
        {"trajectory_contiguous",
         {"trajectory_name", "rowSize", "time", "lat", "lon", "depth", "oxygen", "zorvo_assumed_geographic"}},
        {"two_groups_mooring",
         {"station", "time", "lat", "lon", "pressure", "current_speed", "zorvo_assumed_geographic"}},
        {"two_groups_ship", {"time", "lat", "lon", "air_temperature", "zorvo_assumed_geographic"}},
        {"two_groups_/", {}},
    };
    for (const auto& [name, variables] : expected) {
        for (const std::string suffix : {"", "_nc4"}) {
            if (!suffix.empty() && name.starts_with("two_groups")) {
                continue;
            }
            SCOPED_TRACE(name + suffix);
            Names listed;
            for (const auto& variable : Dataset(name + suffix)["variables"].GetArray()) {
                listed.push_back(Text(variable["name"]));
            }
            EXPECT_EQ(listed, variables);
        }
    }
    EXPECT_EQ(document["summary"]["variables"].GetUint64(), 2u * (7 + 8 + 6 + 8) + 7 + 5);
}

TEST_F(InspectJson, PointDatasetWithRolesPackingAndAssumedGridMapping) {
    for (const char* name : {"point_observations", "point_observations_nc4"}) {
        SCOPED_TRACE(name);
        const auto& dataset = Dataset(name);
        EXPECT_EQ(Text(dataset["format"]), std::string(name).ends_with("nc4") ? "netCDF-4" : "classic");
        EXPECT_EQ(Text(dataset["featureType"]), "point");
        EXPECT_EQ(Text(dataset["cfConventions"]), "1.8");
        EXPECT_EQ(Text(dataset["fullGroupName"]), "");
        const std::map<std::string, std::string> expected{
            {"time", "T seconds 2021-06-01T00:00:00Z"}, {"lat", "Y"}, {"lon", "X"}, {"alt", "Z up"},
            {"sst", "-"}, {"wind_speed", "-"}, {"zorvo_assumed_geographic", "-"}};
        EXPECT_EQ(Roles(dataset), expected);

        const auto& sst = *FindVariable(dataset, "sst");
        EXPECT_EQ(Text(sst["type"]), "short");
        EXPECT_DOUBLE_EQ(sst["packing"]["scale"].GetDouble(), 0.01);
        EXPECT_DOUBLE_EQ(sst["packing"]["offset"].GetDouble(), 273.15);
        EXPECT_EQ(sst["fillValue"].GetInt(), -32767);
        EXPECT_EQ(Text(sst["dimensions"][0]), "obs");
        EXPECT_EQ(Text(FindVariable(dataset, "zorvo_assumed_geographic")->operator[]("type")), "none");

        ASSERT_EQ(dataset["gridMappings"].Size(), 1u);
        const auto& crs = dataset["gridMappings"][0];
        EXPECT_EQ(Text(crs["name"]), "zorvo_assumed_geographic");
        EXPECT_EQ(crs["usedBy"].Size(), 2u);
        ASSERT_TRUE(crs["wkt"].IsString()) << Text(crs["wktError"]);
        EXPECT_NE(Text(crs["wkt"]).find("4326"), std::string::npos);
        EXPECT_TRUE(crs["vwkt"].IsNull());
        EXPECT_TRUE(crs["vwktError"].IsNull());
    }
    const auto& file = document["files"][0];
    ASSERT_EQ(file["messages"].Size(), 2u);
    EXPECT_EQ(file["messages"][0]["code"].GetInt(), 17);
    EXPECT_EQ(Text(file["messages"][0]["name"]), "assumed geographic grid mapping");
    EXPECT_EQ(Text(file["messages"][0]["text"]), "sst");
}

TEST_F(InspectJson, ProfileTrajectoryAndTimeSeriesRoles) {
    const auto& profile = Dataset("profile_orthogonal");
    EXPECT_EQ(Text(profile["featureType"]), "profile");
    ASSERT_EQ(profile["cfRoles"].Size(), 1u);
    EXPECT_EQ(Text(profile["cfRoles"][0]["variable"]), "profile_id");
    EXPECT_EQ(Text(profile["cfRoles"][0]["value"]), "profile_id");
    EXPECT_EQ(Roles(profile)["z"], "Z down");
    EXPECT_EQ(Roles(profile)["time"], "T days 1970-01-01T00:00:00Z");
    EXPECT_EQ(Text(FindVariable(profile, "temperature")->operator[]("dimensions")[1]), "z");

    const auto& trajectory = Dataset("trajectory_contiguous");
    EXPECT_EQ(Text(trajectory["featureType"]), "trajectory");
    EXPECT_EQ(Roles(trajectory)["depth"], "Z down");
    // A "T" separator ends the reference time after the day: midnight.
    EXPECT_EQ(Roles(trajectory)["time"], "T hours 2022-03-01T00:00:00Z");

    const auto& series = Dataset("timeseries_projected");
    EXPECT_EQ(Text(series["featureType"]), "timeSeries");
    EXPECT_EQ(Text(series["cfConventions"]), "1.8");
    // +01:00 moves the reference an hour back to UTC.
    EXPECT_EQ(Roles(series)["time"], "T minutes 2023-01-14T23:00:00Z");
    EXPECT_EQ(Roles(series)["x"], "X");
    ASSERT_EQ(series["gridMappings"].Size(), 1u);
    const auto& crs = series["gridMappings"][0];
    EXPECT_EQ(Text(crs["name"]), "crs");
    ASSERT_TRUE(crs["wkt"].IsString()) << Text(crs["wktError"]);
    EXPECT_NE(Text(crs["wkt"]).find("Mercator"), std::string::npos);
    std::map<std::string, uint64_t> dimensions;
    for (const auto& dimension : series["dimensions"].GetArray()) {
        dimensions[Text(dimension["name"])] = dimension["length"].GetUint64();
    }
    EXPECT_EQ(dimensions, (std::map<std::string, uint64_t>{{"station", 2}, {"time", 5}, {"name_strlen", 12}}));
}

TEST_F(InspectJson, GroupsAreDatasetsDeepestFirstRootLast) {
    const rapidjson::Value* file = nullptr;
    for (const auto& f : document["files"].GetArray()) {
        if (Text(f["path"]).ends_with("two_groups.nc")) {
            file = &f;
        }
    }
    ASSERT_NE(file, nullptr);
    const auto& datasets = (*file)["datasets"];
    ASSERT_EQ(datasets.Size(), 3u);
    EXPECT_EQ(Text(datasets[0]["name"]), "two_groups_mooring");
    EXPECT_EQ(Text(datasets[0]["fullGroupName"]), "/mooring/");
    EXPECT_EQ(Text(datasets[1]["name"]), "two_groups_ship");
    EXPECT_EQ(Text(datasets[2]["name"]), "two_groups_/");
    EXPECT_EQ(Text(datasets[2]["fullGroupName"]), "/");
    EXPECT_EQ(Text(datasets[0]["featureType"]), "timeSeries");
    EXPECT_EQ(Text(datasets[1]["featureType"]), "point");
    EXPECT_EQ(Text(datasets[2]["featureType"]), "unknown");
    EXPECT_EQ(Roles(datasets[0])["pressure"], "Z down");
    EXPECT_EQ(Text(FindVariable(datasets[0], "station")->operator[]("type")), "string");
    // Global attributes of the root are inherited by the groups.
    EXPECT_EQ(Text(datasets[1]["globalAttributes"]["title"]), "Cruise AB-23 combined data");
}

TEST(InspectJsonNcML, AmendmentsAreVisibleAndLogged) {
    const ToolRun run = RunTool({"inspect", "--json", "--ncml", ZDSG_SOURCE_DIR "/examples/point_fixes.ncml",
                                 ExamplePath("point_observations.nc").string()});
    ASSERT_EQ(run.exitStatus, 0) << run.err;
    rapidjson::Document document;
    ASSERT_TRUE(ParseJson(run, document));
    EXPECT_TRUE(document["zdsg"]["ncml"].IsString());
    const auto* dataset = FindDataset(document, "point_observations");
    ASSERT_NE(dataset, nullptr);
    EXPECT_NE(FindVariable(*dataset, "wind"), nullptr);
    EXPECT_EQ(FindVariable(*dataset, "wind_speed"), nullptr);
    EXPECT_EQ(Text((*dataset)["globalAttributes"]["history"]), "metadata corrected by NcML");

    std::map<long, std::vector<std::string>> messages;
    for (const auto& message : document["files"][0]["messages"].GetArray()) {
        messages[message["code"].GetInt64()].push_back(Text(message["text"]));
        if (message["code"].GetInt64() == 16) {
            EXPECT_EQ(Text(message["name"]), "NcML renamed variable");
        }
    }
    EXPECT_EQ(messages[16], std::vector<std::string>{"wind_speed"});
    EXPECT_EQ(messages[15], std::vector<std::string>{"crs"});
    EXPECT_EQ(messages[14], std::vector<std::string>{"history"});

    const auto& mappings = (*dataset)["gridMappings"];
    ASSERT_EQ(mappings.Size(), 1u);  // NcML replaced the assumed grid mapping of both variables
    EXPECT_EQ(Text(mappings[0]["name"]), "crs");
    EXPECT_EQ(mappings[0]["usedBy"].Size(), 2u);
    EXPECT_TRUE(mappings[0]["wkt"].IsString()) << Text(mappings[0]["wktError"]);
}

TEST(InspectJsonNcML, AmendedFillValueAndScaleAreReported) {
    const auto dir = ScratchDirectory("amended_fill");
    WriteFile(dir / "fix.ncml", R"(<netcdf xmlns="http://www.unidata.ucar.edu/namespaces/netcdf/ncml-2.2">
        <variable name="sst">
          <attribute name="_FillValue" type="short" value="-1"/>
          <attribute name="scale_factor" type="float" value="0.5"/>
        </variable>
      </netcdf>)");
    const ToolRun run = RunTool({"inspect", "--json", "--ncml", (dir / "fix.ncml").string(),
                                 ExamplePath("point_observations.nc").string()});
    ASSERT_EQ(run.exitStatus, 0) << run.err;
    rapidjson::Document document;
    ASSERT_TRUE(ParseJson(run, document));
    const auto* dataset = FindDataset(document, "point_observations");
    ASSERT_NE(dataset, nullptr);
    const auto* sst = FindVariable(*dataset, "sst");
    ASSERT_NE(sst, nullptr);
    EXPECT_EQ((*sst)["fillValue"].GetInt(), -1);
    EXPECT_EQ((*sst)["packing"]["scale"].GetDouble(), 0.5);
    EXPECT_DOUBLE_EQ((*sst)["packing"]["offset"].GetDouble(), 273.15);
}

TEST(InspectJsonOddValues, NaNControlCharactersAndBrokenCrsStayValid) {
    const ToolRun run = RunTool({"inspect", "--json", ZDSG_TOOL_TEST_DATA_DIR "/odd_values.nc"});
    ASSERT_EQ(run.exitStatus, 0) << run.err;
    rapidjson::Document document;
    ASSERT_TRUE(ParseJson(run, document));
    const auto* dataset = FindDataset(document, "odd_values");
    ASSERT_NE(dataset, nullptr);

    EXPECT_EQ(Text(FindVariable(*dataset, "temp")->operator[]("fillValue")), "NaN");
    EXPECT_EQ(Text((*dataset)["globalAttributes"]["title"]), "line one\nline two \033[31mred");
    EXPECT_EQ(Roles(*dataset)["time"], "T days 2000-01-01T14:00:00.500Z");
    const auto& depth = (*FindVariable(*dataset, "depth"))["coordinate"];
    EXPECT_EQ(Text(depth["verticalDatumModel"]), "geoid");

    // featureType is a number: the library cannot read it, the rest of the dataset is still shown.
    EXPECT_EQ(Text((*dataset)["featureType"]), "unknown");
    ASSERT_EQ((*dataset)["errors"].Size(), 1u);
    EXPECT_EQ(Text((*dataset)["errors"][0]).rfind("featureType: ", 0), 0u);

    const auto& mappings = (*dataset)["gridMappings"];
    ASSERT_EQ(mappings.Size(), 2u);
    for (const auto& crs : mappings.GetArray()) {
        EXPECT_TRUE(crs["wkt"].IsNull());
        EXPECT_TRUE(crs["wktError"].IsString());
    }
    EXPECT_NE(Text(mappings[0]["wktError"]).find("missing_crs"), std::string::npos);
    EXPECT_NE(Text(mappings[1]["wktError"]).find("EPSG:abc"), std::string::npos);

    ASSERT_EQ(document["files"][0]["messages"].Size(), 1u);
    const auto& message = document["files"][0]["messages"][0];
    EXPECT_EQ(message["code"].GetInt(), 11);
    EXPECT_EQ(Text(message["name"]), "unparseable units");
    EXPECT_EQ(Text(message["text"]), "not a unit ((");
}

// zdsg runs in the user's locale; a decimal comma there changes no number in either report.
TEST(InspectLocale, CommaLocaleChangesNoNumber) {
    for (const std::vector<std::string>& arguments :
         {std::vector<std::string>{"inspect", "--json", ZDSG_EXAMPLES_DIR}, {"inspect", ZDSG_EXAMPLES_DIR}}) {
        const ToolRun plain = RunTool(arguments, {"LC_ALL=C"});
        const ToolRun comma = RunTool(arguments, {"LC_ALL=de_DE.UTF-8"});
        ASSERT_EQ(plain.exitStatus, 0) << plain.err;
        ASSERT_EQ(comma.exitStatus, 0) << comma.err;
        EXPECT_EQ(comma.out, plain.out);
        EXPECT_NE(comma.out.find("0.01"), std::string::npos);  // sst's scale_factor
    }
}

}  // namespace
