// Every input that once broke a fuzz target, replayed through the same code with gcc's sanitizers.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "FuzzTargets.h"

namespace {

std::vector<uint8_t> Bytes(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

// The files of fuzz/regressions/<target>/, in name order.
std::vector<std::filesystem::path> Regressions(const std::string& target) {
    std::vector<std::filesystem::path> files;
    const std::filesystem::path directory = std::filesystem::path(ZDSG_SOURCE_DIR) / "fuzz" / "regressions" / target;
    for (const auto& entry : std::filesystem::directory_iterator(directory)) {
        if (entry.is_regular_file() && entry.path().filename() != "README.md") {
            files.push_back(entry.path());
        }
    }
    std::sort(files.begin(), files.end());
    return files;
}

class FuzzRegressions : public ::testing::Test {
protected:
    void SetUp() override { zdsg_fuzz::InitOnce(ZDSG_UDUNITS2_XML); }
};

TEST_F(FuzzRegressions, NetCDFImages) {
    for (const auto& path : Regressions("netcdf")) {
        SCOPED_TRACE(path.filename().string());
        const std::vector<uint8_t> bytes = Bytes(path);
        zdsg_fuzz::FuzzNetCDFImage(bytes.data(), bytes.size());
    }
}

TEST_F(FuzzRegressions, NcMLDocuments) {
    for (const auto& path : Regressions("ncml")) {
        SCOPED_TRACE(path.filename().string());
        const std::vector<uint8_t> bytes = Bytes(path);
        zdsg_fuzz::FuzzNcML(bytes.data(), bytes.size(), std::filesystem::path(ZDSG_EXAMPLES_DIR) / "point_observations.nc");
    }
}

TEST_F(FuzzRegressions, UnitTexts) {
    for (const auto& path : Regressions("units")) {
        SCOPED_TRACE(path.filename().string());
        const std::vector<uint8_t> bytes = Bytes(path);
        zdsg_fuzz::FuzzUnits(bytes.data(), bytes.size());
    }
}

}  // namespace
