// Real trajectory files: each yields features or is refused (an Exception, or the bad-variant-access
// error of an attribute that must be text and is not), and the features of the files that are read
// agree with what ncdump shows of them. Skipped without the corpus or ncdump.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <regex>
#include <sstream>
#include <string>
#include <variant>
#include <vector>

#include "cursor/FeatureTestSupport.h"
#include <zorvodsg/cursor/TrajectoryFeature.h>
#include <zorvodsg/featureclass/BasicTrajectoryFeatureClass.h>
#include <zorvodsg/host/Utf8.h>
#include <zorvodsg/values/Exception.h>

using namespace ZorvoDSG;

namespace {

const std::filesystem::path kTrajectories = std::filesystem::path(ZDSG_CORPUS_DIR) / "pocean/dsg/trajectory";

// What `ncdump <arguments> <path>` prints; empty when it cannot run.
std::string Ncdump(const std::string& arguments, const std::filesystem::path& path) {
    const std::string command = "ncdump " + arguments + " '" + path.string() + "' 2>/dev/null";
    std::unique_ptr<FILE, int (*)(FILE*)> pipe(popen(command.c_str(), "r"), pclose);
    std::string output;
    if (!pipe) {
        return output;
    }
    char buffer[4096];
    for (size_t n; (n = fread(buffer, 1, sizeof buffer, pipe.get())) > 0;) {
        output.append(buffer, n);
    }
    return output;
}

// The length of a dimension from the header ("obs = 7 ;" or "obs = UNLIMITED ; // (7 currently)").
uint64_t NcdumpDimLen(const std::filesystem::path& path, const std::string& dim) {
    const std::string header = Ncdump("-h", path);
    std::smatch match;
    const std::regex fixed("\\n\\s*" + dim + " = (\\d+) ;");
    const std::regex unlimited("\\n\\s*" + dim + " = UNLIMITED ; // \\((\\d+) currently\\)");
    if (std::regex_search(header, match, fixed) || std::regex_search(header, match, unlimited)) {
        return std::stoull(match[1]);
    }
    ADD_FAILURE() << "no dimension " << dim << " in the header of " << path;
    return 0;
}

// The values of a variable from the data section, in file order; fill values ("_") are NaN.
std::vector<double> NcdumpValues(const std::filesystem::path& path, const std::string& variable) {
    const std::string dump = Ncdump("-v " + variable, path);
    const size_t data = dump.find("\ndata:");
    const std::string section = data == std::string::npos ? std::string() : dump.substr(data);
    std::smatch match;
    std::vector<double> values;
    if (!std::regex_search(section, match, std::regex("\\n\\s*" + variable + " =([^;]*);"))) {
        ADD_FAILURE() << "no data of " << variable << " in " << path;
        return values;
    }
    std::string text = match[1];
    std::replace(text.begin(), text.end(), ',', ' ');
    std::istringstream in(text);
    for (std::string token; in >> token;) {
        values.push_back(token == "_" ? std::nan("") : std::stod(token));
    }
    return values;
}

std::string DimName(ICFMetadata& dataset, long dimId) {
    for (const auto& [name, id] : dataset.Name2Dim()) {
        if (id == dimId) {
            return name;
        }
    }
    return std::string();
}

// Where each trajectory's vertices lie in the coordinate arrays as ncdump prints them (the corpus
// has its multidimensional arrays as (trajectory, obs)).
struct Runs {
    std::vector<uint64_t> first;
    std::vector<uint64_t> length;
};

Runs RunsOf(BasicTrajectoryFeatureClass& trajectories, const std::filesystem::path& path) {
    ICFMetadata& dataset = *trajectories.CFMetadata();
    const uint64_t cObs = NcdumpDimLen(path, DimName(dataset, trajectories.idObservationDim()));
    Runs runs;
    if (trajectories.Layout() == eLayoutCRA) {
        uint64_t offset = 0;
        for (const double n : NcdumpValues(path, dataset.GetVariable(trajectories.idRowSizeVar()).Name())) {
            runs.first.push_back(offset);
            runs.length.push_back(static_cast<uint64_t>(n));
            offset += static_cast<uint64_t>(n);
        }
        return runs;
    }
    const uint64_t cInstances = trajectories.Layout() == eLayoutSingleInstance
                                    ? 1
                                    : NcdumpDimLen(path, DimName(dataset, trajectories.idInstanceDim()));
    for (uint64_t i = 0; i < cInstances; ++i) {
        runs.first.push_back(i * cObs);
        runs.length.push_back(cObs);
    }
    return runs;
}

// The vertices a trajectory keeps: up to the last valid one (all four coordinates present with Z;
// any of x, y, t without).
std::vector<uint64_t> ExpectedVertices(BasicTrajectoryFeatureClass& trajectories, const std::filesystem::path& path,
                                       const Runs& runs) {
    std::vector<std::vector<double>> coordinates;
    for (const Variable& c : {trajectories.XVar(), trajectories.YVar(), trajectories.TVar()}) {
        coordinates.push_back(NcdumpValues(path, c.Name()));
    }
    if (trajectories.bHasZs()) {
        coordinates.push_back(NcdumpValues(path, trajectories.ZVar().Name()));
    }
    std::vector<uint64_t> expected;
    for (size_t r = 0; r < runs.first.size(); ++r) {
        uint64_t kept = 0;
        for (uint64_t v = 0; v < runs.length[r]; ++v) {
            const size_t at = static_cast<size_t>(runs.first[r] + v);
            const auto present = [&](const std::vector<double>& values) { return !std::isnan(values.at(at)); };
            const bool bValid = trajectories.bHasZs() ? std::all_of(coordinates.begin(), coordinates.end(), present)
                                                      : std::any_of(coordinates.begin(), coordinates.end(), present);
            kept = bValid ? v + 1 : kept;
        }
        expected.push_back(kept);
    }
    return expected;
}

class TrajectoryCorpusTest : public ::testing::TestWithParam<std::string> {};

}  // namespace

TEST_P(TrajectoryCorpusTest, FeaturesAgreeWithNcdumpOrTheFileIsRefused) {
    const std::filesystem::path path = kTrajectories / GetParam();
    if (!std::filesystem::exists(path)) {
        GTEST_SKIP() << "no corpus";
    }
    if (Ncdump("-k", path).empty()) {
        GTEST_SKIP() << "no ncdump";
    }
    std::shared_ptr<BasicTrajectoryFeatureClass> trajectories;
    try {
        trajectories = std::dynamic_pointer_cast<BasicTrajectoryFeatureClass>(feature_test::OpenClass(path));
    } catch (const Exception& e) {
        // A refusal is an outcome, not a failure.
        RecordProperty("refused", std::to_string(e.NcErr()) + " " + Host::WideToUtf8(e.wsDetail()));
        return;
    } catch (const std::bad_variant_access&) {
        RecordProperty("refused", "an attribute that must be text is not");
        return;
    }
    ASSERT_TRUE(trajectories);
    std::vector<std::string> observations;
    for (const auto& variable : trajectories->ObservationVariables()) {
        observations.push_back(variable.NameWithFullGroupName());
    }
    const SpatialFilter filter(nullptr, SpaceTime::eSpatialRelationUndefined, Host::WKSEnvelopeZ(),
                               feature_test::AllInstanceNames(*trajectories), observations);
    auto cursor = trajectories->Search(filter);
    const Runs runs = RunsOf(*trajectories, path);
    const std::vector<uint64_t> vertices = ExpectedVertices(*trajectories, path, runs);
    ASSERT_EQ(trajectories->cFeatures(), runs.length.size());

    auto feature = cursor->CreateEmptyFeature();
    size_t i = 0;
    uint64_t cVertices = 0;
    for (; cursor->QueryNext(feature); ++i) {
        ASSERT_LT(i, runs.length.size());
        const auto& trajectory = dynamic_cast<const TrajectoryFeature&>(*feature);
        EXPECT_EQ(static_cast<uint64_t>(trajectory.wksTrajectory().count), vertices[i]) << "trajectory " << i;
        cVertices += static_cast<uint64_t>(trajectory.wksTrajectory().count);
        // Every observation of the run is kept, those of cut vertices too.
        for (long o = 0; o < trajectory.cObservationArrays(); ++o) {
            if (trajectories->ObservationVariables()[static_cast<size_t>(o)].idRowCountVar() ==
                trajectories->idRowSizeVar()) {
                EXPECT_EQ(static_cast<uint64_t>(trajectory.ObservationValues(o).Size()), runs.length[i]) << i << " " << o;
            }
        }
    }
    EXPECT_EQ(i, runs.length.size());
    RecordProperty("features", std::to_string(i));
    RecordProperty("vertices", std::to_string(cVertices));
}

INSTANTIATE_TEST_SUITE_P(Pocean, TrajectoryCorpusTest,
                         ::testing::Values("cr-multiple.nc", "cr-oot-A.nc", "cr-oot-B.nc", "im-multiple-nonstring.nc",
                                           "im-multiple.nc", "im-single.nc", "im-singlerow.nc", "ir-multiple.nc",
                                           "wave-glider-int-attrs.nc"),
                         [](const auto& test) {
                             std::string name = test.param.substr(0, test.param.size() - 3);
                             std::replace(name.begin(), name.end(), '-', '_');
                             return name;
                         });
