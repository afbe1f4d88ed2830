// A classic header whose counts claim more than the file holds is refused before netCDF-C allocates
// for them; every honest classic file passes.

#include <gtest/gtest.h>
#include <netcdf.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include <zorvodsg/netcdf/detail/ClassicHeader.h>
#include <zorvodsg/values/Exception.h>
#include "support/ScratchDir.h"

namespace {

using ZorvoNetCDFDSG::detail::CheckClassicHeader;

class ClassicHeader : public zdsg_test::ScratchDirTest {
protected:
    std::string Example() const {
        return Read(std::filesystem::path(ZDSG_EXAMPLES_DIR) / "point_observations.nc");
    }
    // The error CheckClassicHeader gives for these bytes; 0 when it accepts them.
    long Status(const std::string& bytes) {
        const auto path = Write("header.nc", bytes);
        try {
            CheckClassicHeader(path);
            return 0;
        } catch (const ZorvoDSG::Exception& e) {
            return e.NcErr();
        }
    }
};

TEST_F(ClassicHeader, HonestFilesPass) {
    for (const auto& entry : std::filesystem::directory_iterator(ZDSG_TEST_DATA_DIR)) {
        if (entry.path().extension() == ".nc") {
            EXPECT_NO_THROW(CheckClassicHeader(entry.path())) << entry.path();
        }
    }
    EXPECT_EQ(Status("CDF"), 0);  // too short to tell: netCDF-C refuses it
    EXPECT_EQ(Status("\x89HDF\r\n"), 0);
}

TEST_F(ClassicHeader, CountsBeyondTheFileAreRefused) {
    const std::string example = Example();
    // The dimension list's count is the 4 bytes after the tag at offset 8.
    std::string bytes = example;
    bytes.replace(12, 4, std::string("\x7f\xff\xff\xff", 4));
    EXPECT_EQ(Status(bytes), NC_ENOTNC);
    // Cut short in the middle of the variables.
    EXPECT_EQ(Status(example.substr(0, 200)), NC_ENOTNC);
    // The input the fuzzer found: a variable claiming about a billion dimensions.
    const std::string found = Read(std::filesystem::path(ZDSG_SOURCE_DIR) / "fuzz" / "regressions" / "netcdf" /
                                   "variable_of_a_billion_dimensions.nc");
    EXPECT_EQ(Status(found), NC_ENOTNC);
    // A dimension name longer than netCDF-C's buffers (the first name's length is at offset 16).
    bytes = example;
    bytes.replace(16, 4, std::string("\0\0\x01\x01", 4));
    EXPECT_EQ(Status(bytes), NC_ENOTNC);
}

}  // namespace
