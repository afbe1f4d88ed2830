// `zdsg features` end to end: the formats read back, the filters, coordinates, and the values of the
// point example and fixtures.

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "FeaturesOutput.h"
#include "ToolRunner.h"

namespace fs = std::filesystem;

namespace {

const std::string kPoints = ExamplePath("point_observations.nc").string();

std::string Fixture(const std::string& name) { return std::string(ZDSG_TEST_DATA_DIR) + "/" + name; }
std::string ToolFixture(const std::string& name) { return std::string(ZDSG_TOOL_TEST_DATA_DIR) + "/" + name; }

ToolRun Features(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), "features");
    return RunTool(arguments);
}

CsvTable Csv(const ToolRun& run) {
    EXPECT_EQ(run.exitStatus, 0) << run.err;
    return ParseCsvOutput(run.out).value_or(CsvTable{});
}

rapidjson::Document GeoJson(const ToolRun& run, bool bSequence) {
    EXPECT_EQ(run.exitStatus, 0) << run.err;
    rapidjson::Document features;
    if (!ParseGeoJsonOutput(run.out, bSequence, features)) {
        features.SetArray();
    }
    return features;
}

std::vector<std::string> Oids(const CsvTable& table) { return table.Column("oid"); }

double Number(const std::string& cell) { return std::stod(cell); }

std::string ReadBytes(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

TEST(FeaturesCsv, PointExampleRowByRow) {
    const CsvTable table = Csv(Features({kPoints}));
    EXPECT_EQ(table.header, (std::vector<std::string>{"class", "oid", "time", "x", "y", "z", "sst", "wind_speed"}));
    ASSERT_EQ(table.rows.size(), 6u);
    EXPECT_EQ(Oids(table), (std::vector<std::string>{"0", "1", "2", "3", "4", "5"}));
    EXPECT_EQ(table(0, "class"), "point_observations_point");
    EXPECT_EQ(table(0, "time"), "2021-06-01T00:00:00Z");
    EXPECT_EQ(table(5, "time"), "2021-06-01T05:00:00Z");
    // Float coordinates keep their own digits.
    EXPECT_EQ(table(0, "x"), "-27.5");
    EXPECT_EQ(table(1, "y"), "48.15");
    EXPECT_EQ(table(0, "z"), "0");
    // Unpacked with scale 0.01 and offset 273.15 (floats, so the result is a float); fill values empty.
    EXPECT_EQ(table(0, "sst"), "287.36");
    EXPECT_NEAR(Number(table(3, "sst")), 287.67, 1e-4);
    EXPECT_EQ(table(2, "sst"), "");
    EXPECT_EQ(table(3, "wind_speed"), "");
    EXPECT_EQ(table(4, "wind_speed"), "5.5");
}

TEST(FeaturesCsv, ClassicAndNetCDF4VariantsGiveTheSameRows) {
    const CsvTable classic = Csv(Features({Fixture("points_fields.nc")}));
    const CsvTable nc4 = Csv(Features({Fixture("points_fields_nc4.nc")}));
    ASSERT_EQ(classic.rows.size(), 9u);
    EXPECT_EQ(classic.header, nc4.header);
    ASSERT_EQ(classic.rows.size(), nc4.rows.size());
    for (size_t i = 0; i < classic.rows.size(); ++i) {
        std::vector<std::string> a = classic.rows[i];
        std::vector<std::string> b = nc4.rows[i];
        a[0] = b[0] = "";  // the class names differ by the file names
        EXPECT_EQ(a, b) << "row " << i;
    }
}

TEST(FeaturesCsv, EveryKindOfFieldOfThePointFixture) {
    const CsvTable table = Csv(Features({Fixture("points_fields.nc")}));
    // The variable with a second dimension is no field; char arrays and single chars are.
    EXPECT_EQ(table.header, (std::vector<std::string>{"class", "oid", "time", "x", "y", "z", "temp", "sal", "count",
                                                      "flag", "station", "quality"}));
    ASSERT_EQ(table.rows.size(), 9u);
    EXPECT_EQ(table(1, "time"), "2020-01-01T01:00:00Z");
    EXPECT_EQ(table(1, "x"), "11");  // packed short: 100 * 0.01 + 10
    EXPECT_EQ(table(1, "y"), "50.5");
    EXPECT_EQ(table(1, "z"), "1");
    EXPECT_EQ(table(1, "sal"), "35.1");
    EXPECT_EQ(table(1, "station"), "bravo");
    EXPECT_EQ(table(1, "quality"), "B");
    EXPECT_EQ(table(1, "flag"), "1");
    // Fill values: an empty field, also for coordinates.
    EXPECT_EQ(table(2, "temp"), "");
    EXPECT_EQ(table(2, "station"), "");
    EXPECT_EQ(table(3, "x"), "");
    EXPECT_EQ(table(3, "sal"), "");
    EXPECT_EQ(table(4, "count"), "");
    EXPECT_EQ(table(5, "z"), "");
}

TEST(FeaturesGeoJson, CollectionAndSequenceCarryTheSameFeatures) {
    const rapidjson::Document collection = GeoJson(Features({"--format", "geojson", kPoints}), false);
    const rapidjson::Document sequence = GeoJson(Features({"--format", "geojsonseq", kPoints}), true);
    ASSERT_EQ(collection.Size(), 6u);
    EXPECT_TRUE(collection == sequence);

    const auto& first = collection[0];
    EXPECT_EQ(first["type"], "Feature");
    EXPECT_EQ(first["geometry"]["type"], "Point");
    const auto& coordinates = first["geometry"]["coordinates"];
    ASSERT_EQ(coordinates.Size(), 3u);
    EXPECT_DOUBLE_EQ(coordinates[0].GetDouble(), -27.5);
    EXPECT_DOUBLE_EQ(coordinates[1].GetDouble(), 48.1);
    EXPECT_DOUBLE_EQ(coordinates[2].GetDouble(), 0.0);
    const auto& properties = first["properties"];
    EXPECT_EQ(properties["class"], "point_observations_point");
    EXPECT_EQ(properties["oid"].GetInt(), 0);
    EXPECT_EQ(properties["time"], "2021-06-01T00:00:00Z");
    EXPECT_DOUBLE_EQ(properties["sst"].GetDouble(), 287.36);
    EXPECT_DOUBLE_EQ(properties["wind_speed"].GetDouble(), 7.2);
    EXPECT_TRUE(collection[2]["properties"]["sst"].IsNull());
    EXPECT_TRUE(collection[3]["properties"]["wind_speed"].IsNull());
}

TEST(FeaturesGeoJson, MissingPositionsZAndTimesAreNullOrLeftOut) {
    const rapidjson::Document features = GeoJson(Features({"--format", "geojson", Fixture("points_fields.nc")}), false);
    ASSERT_EQ(features.Size(), 9u);
    EXPECT_TRUE(features[3]["geometry"].IsNull());             // x is a fill value
    EXPECT_EQ(features[5]["geometry"]["coordinates"].Size(), 2u);  // z is a fill value
    EXPECT_EQ(features[4]["geometry"]["coordinates"].Size(), 3u);
    EXPECT_TRUE(features[4]["properties"]["count"].IsNull());
    EXPECT_EQ(features[1]["properties"]["station"], "bravo");
    EXPECT_EQ(features[1]["properties"]["flag"].GetInt(), 1);
}

TEST(FeaturesFilter, BoundingBoxSelectsItsPoints) {
    // Longitudes -27.5 .. -27.1, latitudes 48.1 .. 48.41 (floats); the box's edges are inclusive.
    const CsvTable some = Csv(Features({"--bbox", "-27.4,48,-27.2,48.35", kPoints}));
    EXPECT_EQ(Oids(some), (std::vector<std::string>{"2", "3", "4"}));
    const CsvTable none = Csv(Features({"--bbox", "0,0,1,1", kPoints}));
    EXPECT_TRUE(none.rows.empty());
    EXPECT_EQ(none.header.size(), 8u);

    // Z bounds filter on z; without them a box takes 3-D points at any z. Points without a position
    // are never inside.
    const std::string fields = Fixture("points_fields.nc");
    const CsvTable flat = Csv(Features({"--bbox", "10,50,20,60", fields}));
    EXPECT_EQ(Oids(flat), (std::vector<std::string>{"0", "1", "2", "4", "5", "6", "7", "8"}));
    const CsvTable deep = Csv(Features({"--bbox", "10,50,20,60,2,6", fields}));
    EXPECT_EQ(Oids(deep), (std::vector<std::string>{"2", "4", "5", "6"}));  // z 2, 4, missing, 6
}

TEST(FeaturesFilter, VarsChooseColumnsAndTheirOrder) {
    const CsvTable table = Csv(Features({"--vars", "wind_speed", "--vars", "sst,wind_speed", kPoints}));
    EXPECT_EQ(table.header, (std::vector<std::string>{"class", "oid", "time", "x", "y", "z", "wind_speed", "sst"}));
    EXPECT_EQ(table(0, "wind_speed"), "7.2");

    // Plain or group-qualified names; a class without the variable leaves its column empty.
    const ToolRun twoFiles =
        Features({"--vars", "/ship/air_temperature,sst", ExamplePath("two_groups.nc").string(), kPoints});
    // two_groups.nc also holds a time-series group, whose rows leave both columns empty.
    EXPECT_EQ(twoFiles.exitStatus, 0) << twoFiles.err;
    const CsvTable groups = ParseCsvOutput(twoFiles.out).value_or(CsvTable{});
    EXPECT_EQ(groups.header.back(), "sst");
    size_t ship = 0;  // the mooring group's rows come first
    while (ship < groups.rows.size() && groups(ship, "class") != "two_groups_ship_point") {
        EXPECT_EQ(groups(ship, "sst"), "");
        ++ship;
    }
    ASSERT_EQ(groups.rows.size(), ship + 9u);
    EXPECT_EQ(groups(ship, "/ship/air_temperature"), "14.2");
    EXPECT_EQ(groups(ship, "sst"), "");
    EXPECT_EQ(groups(ship + 3, "/ship/air_temperature"), "");
    EXPECT_EQ(groups(ship + 3, "sst"), "287.36");

    const ToolRun unknown = Features({"--vars", "sst,no_such_variable", kPoints});
    EXPECT_EQ(unknown.exitStatus, 1);
    EXPECT_TRUE(unknown.out.empty());
    EXPECT_NE(unknown.err.find("no feature class has a variable named 'no_such_variable'"), std::string::npos)
        << unknown.err;
}

TEST(FeaturesCoordinates, ProjectedClassIsWrittenInLongitudeLatitude) {
    const std::string projected = ToolFixture("points_projected.nc");
    const rapidjson::Document features = GeoJson(Features({"--format", "geojson", projected}), false);
    ASSERT_EQ(features.Size(), 5u);
    // UTM zone 33N: the central meridian is 15 degrees east, the zone 12 to 18 degrees wide.
    const double expected[][2] = {{15, 0}, {12, 0}, {15, 45.1534772}, {18, 0}, {15, 0.0090473}};
    for (size_t i = 0; i < 5; ++i) {
        const auto& coordinates = features[static_cast<rapidjson::SizeType>(i)]["geometry"]["coordinates"];
        EXPECT_NEAR(coordinates[0].GetDouble(), expected[i][0], 1e-7) << i;
        EXPECT_NEAR(coordinates[1].GetDouble(), expected[i][1], 1e-7) << i;
        EXPECT_FALSE(features[static_cast<rapidjson::SizeType>(i)]["properties"].HasMember("crs"));
    }
    EXPECT_EQ(features[1]["geometry"]["coordinates"].Size(), 2u);  // z is a fill value
    // "minutes since 2023-01-15 00:00:00 +01:00"; a time fill value is null.
    EXPECT_EQ(features[0]["properties"]["time"], "2023-01-14T23:00:00Z");
    EXPECT_TRUE(features[2]["properties"]["time"].IsNull());

    // The box is in longitude/latitude too; it keeps the points near the central meridian's foot.
    const CsvTable boxed = Csv(Features({"--bbox", "14.9,-0.1,15.1,0.1", projected}));
    EXPECT_EQ(Oids(boxed), (std::vector<std::string>{"0", "4"}));
}

TEST(FeaturesCoordinates, NativeCrsKeepsTheFileCoordinatesAndSaysSo) {
    const std::string projected = ToolFixture("points_projected.nc");
    const CsvTable table = Csv(Features({"--native-crs", projected}));
    EXPECT_EQ(table.header, (std::vector<std::string>{"class", "oid", "time", "x", "y", "z", "crs", "level", "name",
                                                      "class_"}));
    EXPECT_EQ(table(0, "x"), "500000");
    EXPECT_EQ(table(2, "y"), "5000000");
    EXPECT_EQ(table(1, "x"), "166021.44308");
    // The CF grid mapping has no identifier: the WKT itself.
    EXPECT_EQ(table(0, "crs").rfind("PROJCRS[\"crs_PCS\"", 0), 0u) << table(0, "crs");
    const CsvTable boxed = Csv(Features({"--native-crs", "--bbox", "400000,-10,600000,10", projected}));
    EXPECT_EQ(Oids(boxed), (std::vector<std::string>{"0"}));

    // A class in WGS 84 names it by identifier.
    const rapidjson::Document features = GeoJson(Features({"--format", "geojsonseq", "--native-crs", kPoints}), true);
    ASSERT_EQ(features.Size(), 6u);
    EXPECT_EQ(features[0]["properties"]["crs"], "EPSG:4326");
}

TEST(FeaturesText, QuotingUtf8AndNonFiniteValues) {
    const std::string projected = ToolFixture("points_projected.nc");
    const CsvTable table = Csv(Features({projected}));
    ASSERT_EQ(table.rows.size(), 5u);
    EXPECT_EQ(table.Column("name"),
              (std::vector<std::string>{"a,b", "say \"hi\"", "two\nlines", "bad \xEF\xBF\xBD\xEF\xBF\xBD", "plain"}));
    // A variable named like a fixed column is renamed.
    EXPECT_EQ(table(0, "class"), "points_projected_point");
    EXPECT_EQ(table(0, "class_"), "1");
    // NaN is empty like a fill value; infinities are written out.
    EXPECT_EQ(table(1, "level"), "");
    EXPECT_EQ(table(2, "level"), "Infinity");

    // GeoJSON: the strict parse validates the UTF-8; NaN and infinities are null.
    for (const bool bSequence : {false, true}) {
        const rapidjson::Document features =
            GeoJson(Features({"--format", bSequence ? "geojsonseq" : "geojson", projected}), bSequence);
        ASSERT_EQ(features.Size(), 5u);
        EXPECT_EQ(features[3]["properties"]["name"], "bad \xEF\xBF\xBD\xEF\xBF\xBD");
        EXPECT_EQ(features[2]["properties"]["name"], "two\nlines");
        EXPECT_TRUE(features[1]["properties"]["level"].IsNull());
        EXPECT_TRUE(features[2]["properties"]["level"].IsNull());
        EXPECT_DOUBLE_EQ(features[3]["properties"]["level"].GetDouble(), -1.25);
    }
}

TEST(FeaturesInput, RefusalsAreReportedAndTheOtherFilesStillWritten) {
    const fs::path dir = ScratchDirectory("bad");
    WriteFile(dir / "junk.nc", "junk");
    const ToolRun run = Features({"--format", "geojson", (dir / "junk.nc").string(), (dir / "missing.nc").string(),
                                  ExamplePath("trajectory_contiguous.nc").string(), kPoints});
    EXPECT_EQ(run.exitStatus, 1);
    rapidjson::Document features;
    ASSERT_TRUE(ParseGeoJsonOutput(run.out, false, features));
    EXPECT_GE(features.Size(), 6u);
    EXPECT_NE(run.err.find("zdsg: " + (dir / "junk.nc").string() + ": NetCDF: Unknown file format\n"),
              std::string::npos)
        << run.err;
    EXPECT_NE(run.err.find("missing.nc: no such file or directory\n"), std::string::npos);


    // Nothing readable: still a valid, empty document.
    const ToolRun empty = Features({"--format", "geojson", (dir / "junk.nc").string()});
    EXPECT_EQ(empty.exitStatus, 1);
    ASSERT_TRUE(ParseGeoJsonOutput(empty.out, false, features));
    EXPECT_EQ(features.Size(), 0u);
}

TEST(FeaturesInput, NcMLAmendsEveryFileAndABrokenDocumentStopsTheRun) {
    const std::string ncml = std::string(ZDSG_SOURCE_DIR) + "/examples/point_fixes.ncml";
    // The document renames wind_speed to wind and gives a latitude_longitude grid mapping on the
    // WGS 84 ellipsoid, which PROJ leaves the positions of.
    const CsvTable table = Csv(Features({"--ncml", ncml, "--vars", "wind", kPoints}));
    ASSERT_EQ(table.rows.size(), 6u);
    EXPECT_EQ(table(0, "wind"), "7.2");
    EXPECT_EQ(table(1, "x"), "-27.42");
    EXPECT_EQ(table(1, "y"), "48.15");

    const fs::path dir = ScratchDirectory("ncml");
    WriteFile(dir / "broken.ncml", "<netcdf><variable name=\"x\"></netcdf>");
    const ToolRun broken = Features({"--ncml", (dir / "broken.ncml").string(), kPoints});
    EXPECT_EQ(broken.exitStatus, 1);
    EXPECT_TRUE(broken.out.empty());
    EXPECT_FALSE(broken.err.empty());
}

TEST(FeaturesOutput, FileFullDiskAndInputProtection) {
    const fs::path dir = ScratchDirectory("out");
    const fs::path file = dir / "points.csv";
    const ToolRun toFile = Features({"-o", file.string(), kPoints});
    EXPECT_EQ(toFile.exitStatus, 0) << toFile.err;
    EXPECT_TRUE(toFile.out.empty());
    EXPECT_EQ(ReadBytes(file), Features({kPoints}).out);

    if (fs::exists("/dev/full")) {
        const ToolRun full = Features({"-o", "/dev/full", kPoints});
        EXPECT_EQ(full.exitStatus, 1);
        EXPECT_NE(full.err.find("cannot write /dev/full: No space left on device"), std::string::npos) << full.err;
    }

    const ToolRun nowhere = Features({"-o", (dir / "no" / "such" / "dir.csv").string(), kPoints});
    EXPECT_EQ(nowhere.exitStatus, 1);
    EXPECT_NE(nowhere.err.find("No such file or directory"), std::string::npos) << nowhere.err;

    const fs::path input = dir / "input.nc";
    fs::copy_file(kPoints, input);
    const ToolRun onInput = Features({"-o", input.string(), input.string()});
    EXPECT_EQ(onInput.exitStatus, 1);
    EXPECT_NE(onInput.err.find("is the input"), std::string::npos) << onInput.err;
    EXPECT_EQ(ReadBytes(input), ReadBytes(kPoints));
}

TEST(FeaturesCommandLine, UsageErrorsExitWithTwo) {
    EXPECT_EQ(Features({}).exitStatus, 2);
    EXPECT_EQ(Features({"--format", "shapefile", kPoints}).exitStatus, 2);
    for (const char* box : {"1,2,3", "1,2,3,4,5", "a,2,3,4", "3,2,1,4", "1,2,3,4,9,1", "1,2,3,nan"}) {
        const ToolRun run = Features({"--bbox", box, kPoints});
        EXPECT_EQ(run.exitStatus, 2) << box;
        EXPECT_NE(run.err.find("--bbox"), std::string::npos) << run.err;
    }
    EXPECT_EQ(Features({"--vars", "", kPoints}).exitStatus, 2);
    EXPECT_EQ(Features({"--ncml", "/no/such.ncml", kPoints}).exitStatus, 2);
    // A negative first number is a value, not an option.
    EXPECT_EQ(Features({"--bbox", "-28,48,-27,49", kPoints}).exitStatus, 0);
}

}  // namespace

TEST(FeaturesProfiles, OneCsvRowPerObservation) {
    const CsvTable table = Csv(Features({ExamplePath("profile_orthogonal.nc").string()}));
    ASSERT_EQ(table.rows.size(), 12u);  // 3 casts of 4 levels
    EXPECT_EQ(table(4, "oid"), "102");
    EXPECT_EQ(table(4, "time"), "2021-01-01T12:00:00Z");
    EXPECT_EQ(table(6, "z"), "25");
    EXPECT_EQ(table(7, "temperature"), "");  // fill value
    EXPECT_EQ(table(7, "salinity"), "");
    EXPECT_EQ(table(8, "temperature"), "11.8");
}

TEST(FeaturesProfiles, ProjectedTimeSeriesAsLongitudeLatitudeWithObservationArrays) {
    const ToolRun run = Features({"--format", "geojson", "--bbox", "15.5,43,16,44",
                                  ExamplePath("timeseries_projected.nc").string()});
    ASSERT_EQ(run.exitStatus, 0) << run.err;
    rapidjson::Document features;
    ASSERT_TRUE(ParseGeoJsonOutput(run.out, false, features));
    ASSERT_EQ(features.Size(), 1u);
    const auto& split = features[0];
    EXPECT_STREQ(split["properties"]["oid"].GetString(), "Split");
    EXPECT_NEAR(split["geometry"]["coordinates"][0].GetDouble(), 15.881, 1e-3);
    EXPECT_NEAR(split["geometry"]["coordinates"][1].GetDouble(), 43.514, 1e-3);
    const auto& observations = split["properties"]["observations"];
    ASSERT_EQ(observations["time"].Size(), 5u);
    EXPECT_STREQ(observations["time"][0].GetString(), "2023-01-14T23:00:00Z");  // +01:00 zone
    EXPECT_NEAR(observations["sea_level"][3].GetDouble(), 0.22, 1e-6);
}

TEST(FeaturesTrajectories, OneRowPerVertexAndLineStrings) {
    const CsvTable table = Csv(Features({ExamplePath("trajectory_contiguous.nc").string()}));
    ASSERT_FALSE(table.rows.empty());
    EXPECT_EQ(table(0, "oid"), "glider01");
    EXPECT_EQ(table(1, "z"), "40");
    EXPECT_EQ(table(1, "time"), "2022-03-01T01:00:00Z");

    const ToolRun run = Features({"--format", "geojsonseq", ExamplePath("trajectory_contiguous.nc").string()});
    ASSERT_EQ(run.exitStatus, 0) << run.err;
    rapidjson::Document features;
    ASSERT_TRUE(ParseGeoJsonOutput(run.out, true, features));
    ASSERT_GE(features.Size(), 2u);
    const auto& second = features[1];
    EXPECT_STREQ(second["geometry"]["type"].GetString(), "LineString");
    EXPECT_EQ(second["geometry"]["coordinates"].Size(), 3u);
    EXPECT_EQ(second["geometry"]["coordinates"][0].Size(), 3u);  // with z
    EXPECT_STREQ(second["properties"]["timeEnd"].GetString(), "2022-03-01T02:30:00Z");
    EXPECT_TRUE(second["properties"]["observations"]["oxygen"][1].IsNull());  // fill value
}

TEST(FeaturesZorvoJSON, OneDocumentPerClass) {
    const ToolRun run = Features({"--format", "zorvojson", kPoints, ExamplePath("profile_orthogonal.nc").string(),
                                  ExamplePath("trajectory_contiguous.nc").string()});
    ASSERT_EQ(run.exitStatus, 0) << run.err;
    rapidjson::Document documents;
    documents.Parse(run.out.c_str());
    ASSERT_FALSE(documents.HasParseError());
    ASSERT_TRUE(documents.IsArray());
    ASSERT_EQ(documents.Size(), 3u);
    EXPECT_TRUE(documents[0].IsObject() && documents[0].ObjectEmpty());  // a point class writes {}
    EXPECT_STREQ(documents[1]["objectIdFieldName"].GetString(), "profile_orthogonal_profile");
    EXPECT_EQ(documents[1]["features"].Size(), 3u);
    EXPECT_EQ(documents[1]["features"][0]["geometry"]["paths"][0].Size(), 4u);
    EXPECT_STREQ(documents[2]["geometryType"].GetString(), "zorvoGeometryPolyline");
}

TEST(FeaturesZorvoJSON, AClassThatFailsLeavesValidJSON) {
    const ToolRun run = Features({"--format", "zorvojson", Fixture("ts_ragged_negative.nc"), kPoints,
                                  Fixture("ts_ragged_toolong.nc")});
    EXPECT_EQ(run.exitStatus, 1);
    EXPECT_NE(run.err.find("negative row size"), std::string::npos) << run.err;
    rapidjson::Document documents;
    documents.Parse(run.out.c_str());
    ASSERT_FALSE(documents.HasParseError()) << run.out;
    ASSERT_TRUE(documents.IsArray());
    EXPECT_EQ(documents.Size(), 1u);  // the point class; the refused classes leave no trace
}
