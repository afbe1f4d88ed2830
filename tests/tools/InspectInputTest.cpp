// `zdsg inspect` on bad input and on the command line itself: refusals never stop the other files,
// and the exit status tells what happened.

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

#include "ToolRunner.h"

namespace fs = std::filesystem;

namespace {

std::string Text(const rapidjson::Value& value) { return value.IsString() ? value.GetString() : "<not text>"; }

std::string ReadBytes(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

const rapidjson::Value* FindFile(const rapidjson::Document& document, const std::string& suffix) {
    for (const auto& file : document["files"].GetArray()) {
        if (Text(file["path"]).ends_with(suffix)) {
            return &file;
        }
    }
    return nullptr;
}

TEST(InspectInput, RefusedFilesAreReportedAndTheOthersStillRead) {
    const fs::path dir = ScratchDirectory("bad");
    WriteFile(dir / "text.nc", "this is not a netCDF file\n");
    const std::string good = ReadBytes(ExamplePath("point_observations.nc"));
    WriteFile(dir / "truncated.nc", good.substr(0, 40));
    const std::string nc4 = ReadBytes(ExamplePath("two_groups.nc"));
    WriteFile(dir / "truncated_nc4.nc", nc4.substr(0, nc4.size() / 2));
    fs::copy_file(ExamplePath("point_observations.nc"), dir / "zz_good.nc");

    const ToolRun run = RunTool({"inspect", "--json", dir.string(), (dir / "missing.nc").string()});
    EXPECT_EQ(run.exitStatus, 1) << run.err;
    rapidjson::Document document;
    ASSERT_TRUE(ParseJson(run, document));
    ASSERT_EQ(document["files"].Size(), 5u);

    for (const char* name : {"text.nc", "truncated.nc", "truncated_nc4.nc", "missing.nc"}) {
        SCOPED_TRACE(name);
        const auto* file = FindFile(document, name);
        ASSERT_NE(file, nullptr);
        EXPECT_EQ(Text((*file)["status"]), "refused");
        EXPECT_FALSE(Text((*file)["error"]).empty());
        EXPECT_EQ((*file)["datasets"].Size(), 0u);
    }
    EXPECT_EQ(Text((*FindFile(document, "missing.nc"))["error"]), "no such file or directory");
    // A refusal reads as a sentence: the path is the file's own key, and no field is left empty.
    EXPECT_EQ(Text((*FindFile(document, "text.nc"))["error"]), "NetCDF: Unknown file format");
    EXPECT_EQ(Text((*FindFile(document, "zz_good.nc"))["status"]), "read");
    EXPECT_EQ(document["summary"]["refused"].GetUint64(), 4u);
    EXPECT_EQ(document["summary"]["read"].GetUint64(), 1u);

    // Each refusal is on stderr too, as "zdsg: PATH: reason".
    for (const char* name : {"text.nc", "truncated.nc", "truncated_nc4.nc", "missing.nc"}) {
        const auto* file = FindFile(document, name);
        const std::string line = "zdsg: " + Text((*file)["path"]) + ": " + Text((*file)["error"]) + "\n";
        EXPECT_NE(run.err.find(line), std::string::npos) << name << "\n" << run.err;
    }
    EXPECT_EQ(run.err.find("zz_good.nc"), std::string::npos) << run.err;
}

TEST(InspectInput, WriteErrorsFailTheRun) {
    if (!fs::exists("/dev/full")) {
        GTEST_SKIP() << "no /dev/full";
    }
    for (const std::vector<std::string>& arguments :
         {std::vector<std::string>{"inspect", "--json", ZDSG_EXAMPLES_DIR}, {"inspect", ZDSG_EXAMPLES_DIR}}) {
        const ToolRun run = RunTool(arguments, {}, {}, "/dev/full");
        EXPECT_EQ(run.exitStatus, 1);
        EXPECT_NE(run.err.find("zdsg: cannot write the report"), std::string::npos) << run.err;
    }
}

TEST(InspectInput, TextReportShowsRefusalsWithoutColourWhenPiped) {
    const fs::path dir = ScratchDirectory("text");
    WriteFile(dir / "junk.nc", "junk");
    const ToolRun run = RunTool({"inspect", (dir / "junk.nc").string(), ExamplePath("profile_orthogonal.nc").string()},
                                {}, {"NO_COLOR"});
    EXPECT_EQ(run.exitStatus, 1);
    EXPECT_NE(run.out.find("junk.nc  refused"), std::string::npos) << run.out;
    EXPECT_NE(run.out.find("dataset profile_orthogonal"), std::string::npos);
    EXPECT_NE(run.out.find("2 files: 1 read, 1 refused"), std::string::npos);
    EXPECT_EQ(run.out.find('\x1b'), std::string::npos);
    EXPECT_EQ(run.err.find('\r'), std::string::npos);  // no progress line: stderr is no terminal
}

TEST(InspectInput, ControlCharactersFromFilesAreEscapedInText) {
    const ToolRun run = RunTool({"inspect", ZDSG_TOOL_TEST_DATA_DIR "/odd_values.nc"});
    EXPECT_EQ(run.exitStatus, 0) << run.err;
    EXPECT_EQ(run.out.find('\x1b'), std::string::npos);
    EXPECT_NE(run.out.find(R"("line one\nline two \x1B[31mred")"), std::string::npos) << run.out;
    EXPECT_NE(run.out.find("T days since 2000-01-01T14:00:00.500Z"), std::string::npos);
    EXPECT_NE(run.out.find("missing_crs (used by temp)"), std::string::npos);
}

TEST(InspectInput, TextReportNamesEachCrsAndPrintsWktOnlyOnRequest) {
    const std::vector<std::string> files = {ExamplePath("point_observations.nc").string(),
                                            ExamplePath("timeseries_projected.nc").string()};
    std::vector<std::string> arguments = {"inspect"};
    arguments.insert(arguments.end(), files.begin(), files.end());
    const ToolRun run = RunTool(arguments, {}, {"NO_COLOR"});
    EXPECT_EQ(run.exitStatus, 0) << run.err;
    // By identifier when the WKT has one, else by projection and datum names.
    EXPECT_NE(run.out.find("horizontal  WGS 84 (EPSG:4326)\n"), std::string::npos) << run.out;
    EXPECT_NE(run.out.find("horizontal  crs_PCS (Transverse Mercator, datum crs_D)\n"), std::string::npos)
        << run.out;
    EXPECT_EQ(run.out.find("GEOGCRS["), std::string::npos);
    EXPECT_EQ(run.out.find("PROJCRS["), std::string::npos);

    arguments.push_back("--wkt");
    const ToolRun withWkt = RunTool(arguments, {}, {"NO_COLOR"});
    EXPECT_EQ(withWkt.exitStatus, 0) << withWkt.err;
    EXPECT_NE(withWkt.out.find("horizontal WKT  PROJCRS[\"crs_PCS\""), std::string::npos) << withWkt.out;
    EXPECT_NE(withWkt.out.find("horizontal WKT  GEOGCRS[\"WGS 84\""), std::string::npos);

    // JSON keeps the full WKT.
    const ToolRun json = RunTool({"inspect", "--json", files[1]});
    rapidjson::Document document;
    ASSERT_TRUE(ParseJson(json, document));
    EXPECT_EQ(Text(document["files"][0]["datasets"][0]["gridMappings"][0]["wkt"]).rfind("PROJCRS[", 0), 0u);
}

TEST(InspectInput, RefusalReadsAsASentence) {
    const fs::path dir = ScratchDirectory("sentence");
    WriteFile(dir / "junk.nc", "junk");
    const ToolRun run = RunTool({"inspect", (dir / "junk.nc").string()}, {}, {"NO_COLOR"});
    EXPECT_EQ(run.exitStatus, 1);
    // The path heads the entry already; the empty detail leaves no empty field behind.
    EXPECT_NE(run.out.find("junk.nc  refused\n  NetCDF: Unknown file format\n"), std::string::npos) << run.out;
    EXPECT_EQ(run.out.find(": :"), std::string::npos);
}

TEST(InspectInput, DirectoriesAreWalkedForNetCDFNamesOnly) {
    const fs::path dir = ScratchDirectory("walk");
    fs::create_directories(dir / "sub");
    fs::copy_file(ExamplePath("profile_orthogonal.nc"), dir / "b.nc");
    fs::copy_file(ExamplePath("profile_orthogonal.nc"), dir / "a.nc4");
    fs::copy_file(ExamplePath("profile_orthogonal.nc"), dir / "c.NC");  // extensions compare exactly
    fs::copy_file(ExamplePath("profile_orthogonal.nc"), dir / "d.txt");
    fs::copy_file(ExamplePath("profile_orthogonal.nc"), dir / "sub" / "e.nc");

    auto paths = [&dir](const ToolRun& run) {
        rapidjson::Document document;
        std::vector<std::string> names;
        if (ParseJson(run, document)) {
            for (const auto& file : document["files"].GetArray()) {
                names.push_back(fs::path(Text(file["path"])).lexically_relative(dir).string());
            }
        }
        return names;
    };
    const ToolRun flat = RunTool({"inspect", "--json", dir.string()});
    EXPECT_EQ(flat.exitStatus, 0) << flat.err;
    EXPECT_EQ(paths(flat), (std::vector<std::string>{"a.nc4", "b.nc"}));

    const ToolRun deep = RunTool({"inspect", "--json", "--recursive", dir.string()});
    EXPECT_EQ(deep.exitStatus, 0) << deep.err;
    EXPECT_EQ(paths(deep), (std::vector<std::string>{"a.nc4", "b.nc", "sub/e.nc"}));

    // A file named directly is opened whatever its extension.
    const ToolRun named = RunTool({"inspect", "--json", (dir / "d.txt").string()});
    EXPECT_EQ(named.exitStatus, 0) << named.err;
}

TEST(InspectInput, EmptyDirectoryIsNoError) {
    const fs::path dir = ScratchDirectory("empty");
    const ToolRun run = RunTool({"inspect", "--json", dir.string()});
    EXPECT_EQ(run.exitStatus, 0);
    EXPECT_NE(run.err.find("no .nc or .nc4 files"), std::string::npos) << run.err;
    rapidjson::Document document;
    ASSERT_TRUE(ParseJson(run, document));
    EXPECT_EQ(document["files"].Size(), 0u);
    EXPECT_EQ(document["summary"]["files"].GetUint64(), 0u);
}

TEST(InspectInput, BrokenNcMLStopsBeforeAnyFile) {
    const fs::path dir = ScratchDirectory("ncml");
    WriteFile(dir / "broken.ncml", "<netcdf><variable name=\"x\"></netcdf>");
    const ToolRun broken = RunTool({"inspect", "--json", "--ncml", (dir / "broken.ncml").string(),
                                    ExamplePath("point_observations.nc").string()});
    EXPECT_EQ(broken.exitStatus, 1);
    EXPECT_TRUE(broken.out.empty()) << broken.out;
    EXPECT_NE(broken.err.find("line"), std::string::npos) << broken.err;

    WriteFile(dir / "fixes.txt", "<netcdf/>");
    const ToolRun wrongExtension = RunTool({"inspect", "--ncml", (dir / "fixes.txt").string(),
                                            ExamplePath("point_observations.nc").string()});
    EXPECT_EQ(wrongExtension.exitStatus, 1);
    EXPECT_FALSE(wrongExtension.err.empty());

    // An NcML element the library rejects refuses the file, not the run.
    WriteFile(dir / "unnamed.ncml", "<netcdf><remove type=\"variable\"/></netcdf>");
    const ToolRun rejected = RunTool({"inspect", "--json", "--ncml", (dir / "unnamed.ncml").string(),
                                      ExamplePath("point_observations.nc").string()});
    EXPECT_EQ(rejected.exitStatus, 1);
    rapidjson::Document document;
    ASSERT_TRUE(ParseJson(rejected, document));
    EXPECT_EQ(Text(document["files"][0]["status"]), "refused");
    EXPECT_NE(Text(document["files"][0]["error"]).find("unnamed variable"), std::string::npos);
}

TEST(InspectCommandLine, UsageErrorsExitWithTwo) {
    const ToolRun bare = RunTool({});
    EXPECT_EQ(bare.exitStatus, 2);
    EXPECT_NE(bare.err.find("inspect"), std::string::npos);

    EXPECT_EQ(RunTool({"inspect"}).exitStatus, 2);
    EXPECT_EQ(RunTool({"inspect", "--no-such-option", ZDSG_EXAMPLES_DIR}).exitStatus, 2);
    EXPECT_EQ(RunTool({"frobnicate"}).exitStatus, 2);
    EXPECT_EQ(RunTool({"inspect", "--ncml", "/no/such/file.ncml", ZDSG_EXAMPLES_DIR}).exitStatus, 2);

    const ToolRun version = RunTool({"--version"});
    EXPECT_EQ(version.exitStatus, 0);
    EXPECT_EQ(version.out.rfind("zdsg ", 0), 0u);
    EXPECT_EQ(RunTool({"inspect", "--help"}).exitStatus, 0);
}

TEST(InspectCommandLine, UnitDatabaseIsFoundOrNamed) {
    rapidjson::Document document;
    if (std::string(ZDSG_UDUNITS2_XML).empty() || !fs::exists(ZDSG_UDUNITS2_XML)) {
        GTEST_SKIP() << "no UDUNITS-2 database on this machine";
    }
    const ToolRun named = RunTool({"inspect", "--json", "--udunits", ZDSG_UDUNITS2_XML,
                                   ExamplePath("point_observations.nc").string()});
    EXPECT_EQ(named.exitStatus, 0) << named.err;
    ASSERT_TRUE(ParseJson(named, document));
    EXPECT_EQ(Text(document["zdsg"]["udunits2"]), ZDSG_UDUNITS2_XML);

    const ToolRun fromEnvironment = RunTool({"inspect", "--json", ExamplePath("point_observations.nc").string()},
                                            {std::string("UDUNITS2_XML_PATH=") + ZDSG_UDUNITS2_XML});
    ASSERT_TRUE(ParseJson(fromEnvironment, document));
    EXPECT_EQ(Text(document["zdsg"]["udunits2"]), ZDSG_UDUNITS2_XML);

    const fs::path dir = ScratchDirectory("units");
    WriteFile(dir / "broken.xml", "<unit-system><unit>");
    const ToolRun broken = RunTool({"inspect", "--udunits", (dir / "broken.xml").string(),
                                    ExamplePath("point_observations.nc").string()});
    EXPECT_EQ(broken.exitStatus, 1);
    EXPECT_NE(broken.err.find("udunits"), std::string::npos) << broken.err;
}

}  // namespace
