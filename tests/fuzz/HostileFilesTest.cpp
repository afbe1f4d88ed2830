// Files written to break a reader: each is refused with the library's Exception (naming the limit
// where one applies) or read correctly, and nothing else escapes, under the sanitizers too.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cctype>
#include <filesystem>
#include <string>
#include <typeinfo>
#include <variant>

#include <unistd.h>

#include "FuzzTargets.h"
#include "HostileFiles.h"

namespace {

using zdsg_fuzz::ReadSummary;
using zdsg_test::HostileFile;
using ::testing::HasSubstr;

std::string TestName(const ::testing::TestParamInfo<HostileFile>& param) {
    std::string name = param.param.name;
    for (char& c : name) {
        c = std::isalnum(static_cast<unsigned char>(c)) ? c : '_';
    }
    return name;
}

class HostileFiles : public ::testing::TestWithParam<HostileFile> {
protected:
    void SetUp() override { zdsg_fuzz::InitOnce(ZDSG_UDUNITS2_XML); }

    ReadSummary Read() {
        const std::filesystem::path path = std::filesystem::temp_directory_path() /
                                           ("zdsg_hostile_" + std::to_string(::getpid()) + "_" + GetParam().name + ".nc");
        GetParam().write(path);
        const ReadSummary summary = zdsg_fuzz::ReadEverything(path);
        std::filesystem::remove(path);
        return summary;
    }

    static std::string AllRefusals(const ReadSummary& summary) {
        std::string text;
        for (const auto& refusal : summary.refusals) {
            text += refusal + "\n";
        }
        return text;
    }
};

TEST_P(HostileFiles, AreRefusedOrReadNeverCrash) {
    const ReadSummary summary = Read();
    EXPECT_TRUE(!summary.refusals.empty() || summary.cClasses > 0) << GetParam().name;
}

INSTANTIATE_TEST_SUITE_P(Generated, HostileFiles, ::testing::ValuesIn(zdsg_test::HostileFiles()),
                         TestName);

// The limits say which one a file ran into.
class HostileLimits : public HostileFiles {};

TEST_P(HostileLimits, NameTheLimit) {
    const ReadSummary summary = Read();
    EXPECT_THAT(AllRefusals(summary), HasSubstr("exceeds the limit of")) << GetParam().name;
}

INSTANTIATE_TEST_SUITE_P(Generated, HostileLimits, ::testing::ValuesIn([] {
                             std::vector<HostileFile> limited;
                             for (const auto& file : zdsg_test::HostileFiles()) {
                                 for (const char* name : {"huge_instance_dimension", "string_width_of_millions",
                                                          "orthogonal_profiles_of_2^35_levels", "groups_nested_100_deep",
                                                          "row_size_of_a_huge_sample_dimension"}) {
                                     if (file.name == name) {
                                         limited.push_back(file);
                                     }
                                 }
                             }
                             return limited;
                         }()),
                         TestName);

}  // namespace
