#pragma once
// Opening fixture files as feature classes and reading their features.

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include <zorvodsg/cursor/Feature.h>
#include <zorvodsg/cursor/IFeatureCursor.h>
#include <zorvodsg/featureclass/BasicFeatureClass.h>
#include <zorvodsg/netcdf/NetCDFFile.h>
#include <zorvodsg/spacetime/UnitSystem.h>
#include <zorvodsg/values/NetCDFWorkspaceLog.h>

namespace feature_test {

inline std::filesystem::path DataPath(const std::string& name) { return std::filesystem::path(ZDSG_TEST_DATA_DIR) / name; }
inline std::filesystem::path ExamplePath(const std::string& name) {
    return std::filesystem::path(ZDSG_EXAMPLES_DIR) / name;
}

// The first dataset of the file, opened as a feature class without a workspace.
inline std::shared_ptr<ZorvoDSG::BasicFeatureClass> OpenClass(const std::filesystem::path& path,
                                                              ZorvoDSG::eFeatureType hint = ZorvoDSG::eFeatureUnknown) {
    ZorvoDSG::s_InitUDUnits2(ZDSG_UDUNITS2_XML);
    ZorvoNetCDFDSG::NetCDFWorkspaceLog log;
    auto files = ZorvoNetCDFDSG::NetCDFFile::s_Open(path, 1, nullptr, log);
    EXPECT_FALSE(files.empty());
    return ZorvoDSG::BasicFeatureClass::s_Open(files.back(), hint, nullptr);
}

// Test names of the classic (first) and netCDF-4 (second) variants of a fixture.
inline std::string FormatName(const ::testing::TestParamInfo<std::string>& param) {
    return param.index == 0 ? "classic" : "netcdf4";
}

// Every feature of a search, each a separate object.
inline std::vector<std::shared_ptr<ZorvoDSG::Feature>> ReadAll(ZorvoDSG::IFeatureCursor& cursor) {
    std::vector<std::shared_ptr<ZorvoDSG::Feature>> features;
    while (auto feature = cursor.Next()) {
        features.push_back(feature);
    }
    return features;
}

// Every instance variable of the class, by group-qualified name.
inline std::vector<std::string> AllInstanceNames(ZorvoDSG::IFeatureClass& featureClass) {
    std::vector<std::string> names;
    for (const auto& variable : featureClass.InstanceVariables()) {
        names.push_back(variable.NameWithFullGroupName());
    }
    return names;
}

}  // namespace feature_test
