// Real files written by others: every dataset yields its features or is refused with a documented
// code, and never crashes. Skipped when the corpus is not beside the project.
#include <gtest/gtest.h>

#include <filesystem>
#include <iostream>
#include <map>

#include "cursor/FeatureTestSupport.h"
#include <zorvodsg/cursor/ProfileFeature.h>
#include <zorvodsg/featureclass/IFeatureClassObservations.h>
#include <zorvodsg/values/Exception.h>

using namespace ZorvoDSG;

namespace {

struct Outcome {
    uint64_t cFeatures = 0;
    uint64_t cObservations = 0;  // values of the first observation variable
    long code = 0;  // 0: read
};

// Features and observations of the files that are read, as ncdump shows their dimensions.
const std::map<std::string, std::pair<uint64_t, uint64_t>> kExpected = {
    {"profile/om-multiple.nc", {35, 35 * 2064}}, {"profile/om-single.nc", {1, 98}},
    {"timeseries/im-multiple.nc", {10, 10 * 20}}, {"timeseries/om-multiple.nc", {10, 10 * 100}},
    {"timeseries/om-single.nc", {1, 100}},
};

std::vector<std::string> ObservationNames(IFeatureClass& featureClass) {
    std::vector<std::string> names;
    if (auto* observations = dynamic_cast<IFeatureClassObservations*>(&featureClass)) {
        for (const auto& variable : observations->ObservationVariables()) {
            names.push_back(variable.NameWithFullGroupName());
        }
    }
    return names;
}

Outcome ReadFile(const std::filesystem::path& path) {
    Outcome outcome;
    try {
        auto featureClass = feature_test::OpenClass(path);
        SpatialFilter filter(nullptr, SpaceTime::eSpatialRelationUndefined, Host::WKSEnvelopeZ(),
                             feature_test::AllInstanceNames(*featureClass), ObservationNames(*featureClass));
        auto cursor = featureClass->Search(filter);
        auto feature = cursor->CreateEmptyFeature();
        while (cursor->QueryNext(feature)) {
            ++outcome.cFeatures;
            if (auto* profile = dynamic_cast<ProfileFeature*>(feature.get()); profile && profile->cObservationArrays() > 0) {
                outcome.cObservations += profile->ObservationValues(0).Size();
            }
        }
        EXPECT_EQ(outcome.cFeatures, featureClass->cFeatures()) << path;
    } catch (const Exception& e) {
        outcome.code = e.NcErr();
        std::wcout << L"  refused: " << e.ToString().Str() << L'\n';
    }
    return outcome;
}

}  // namespace

TEST(CorpusFeaturesTest, EveryFileIsReadOrRefusedWithADocumentedCode) {
    const std::filesystem::path corpus = std::filesystem::path(ZDSG_CORPUS_DIR) / "pocean" / "dsg";
    if (!std::filesystem::is_directory(corpus)) {
        GTEST_SKIP() << "no corpus at " << corpus;
    }
    std::map<std::string, Outcome> outcomes;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(corpus)) {
        if (entry.path().extension() == ".nc") {
            const std::string name = std::filesystem::relative(entry.path(), corpus).string();
            std::cout << name << '\n';
            outcomes[name] = ReadFile(entry.path());
        }
    }
    for (const auto& [name, outcome] : outcomes) {
        std::cout << name << ": " << (outcome.code == 0 ? "read " : "refused ") << outcome.code << ", "
                  << outcome.cFeatures << " features, " << outcome.cObservations << " observations\n";
        if (const auto expected = kExpected.find(name); expected != kExpected.end() && outcome.code == 0) {
            EXPECT_EQ(outcome.cFeatures, expected->second.first) << name;
            EXPECT_EQ(outcome.cObservations, expected->second.second) << name;
        }
    }
    for (const auto& [name, counts] : kExpected) {
        EXPECT_EQ(outcomes[name].code, 0) << name << " is no longer read";
    }
    EXPECT_GT(outcomes.size(), 30u);
}
