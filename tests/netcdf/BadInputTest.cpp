// Files the library must refuse with an exception rather than crash on.

#include <gtest/gtest.h>
#include <netcdf.h>
#include <dlfcn.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <fstream>
#include <iterator>
#include <string>

#include "NcFileTestSupport.h"
#include <zorvodsg/values/Exception.h>
#include "support/ScratchDir.h"

namespace {

using ZorvoDSG::Exception;
using namespace ncfile_test;

class BadInputTest : public zdsg_test::ScratchDirTest {};

long OpenError(const std::filesystem::path& path) {
    try {
        Open(path);
    } catch (const Exception& e) {
        EXPECT_EQ(e.NcPath(), path);
        return e.NcErr();
    }
    ADD_FAILURE() << "opened " << path;
    return 0;
}

TEST_F(BadInputTest, TextFileNamedNc) {
    EXPECT_EQ(OpenError(Write("text.nc", "netcdf x { dimensions: a = 1 ; }\n")), NC_ENOTNC);
}

TEST_F(BadInputTest, MissingFileAndUrl) {
    EXPECT_EQ(OpenError(m_dir / "missing.nc"), ENOENT);
    // Never handed to the DAP client: refused like a missing file.
    EXPECT_EQ(OpenError("http://localhost:1/data.nc"), ENOENT);
    EXPECT_EQ(OpenError("file:///tmp/data.nc"), ENOENT);
}

TEST_F(BadInputTest, WhatIsNotARegularFileIsRefusedWithoutReadingIt) {
    const auto fifo = m_dir / "fifo.nc";
    ASSERT_EQ(::mkfifo(fifo.c_str(), 0600), 0);  // opening it for reading would wait for a writer
    EXPECT_EQ(OpenError(fifo), NC_ENOTNC);
    EXPECT_EQ(OpenError("/dev/zero"), NC_ENOTNC);
    EXPECT_EQ(OpenError(m_dir), NC_ENOTNC);
}

TEST_F(BadInputTest, TruncatedFiles) {
    const std::string classic = Read(DataPath("ncfile_x.nc"));
    const std::string nc4 = Read(DataPath("ncfile_x_nc4.nc"));
    ASSERT_GT(classic.size(), 200u);
    ASSERT_GT(nc4.size(), 512u);
    EXPECT_NE(OpenError(Write("classic_cut.nc", classic.substr(0, 200))), NC_NOERR);
    EXPECT_NE(OpenError(Write("nc4_half.nc", nc4.substr(0, nc4.size() / 2))), NC_NOERR);
    EXPECT_NE(OpenError(Write("empty.nc", "")), NC_NOERR);
}

// netCDF-C reads a classic header cut short as if padded with zeros, so some prefixes open; none may
// crash or escape as anything but an exception.
TEST_F(BadInputTest, EveryPrefixOpensOrThrows) {
    for (const char* name : {"ncfile_x.nc", "ncfile_x_nc4.nc"}) {
        const std::string bytes = Read(DataPath(name));
        const size_t step = std::max<size_t>(1, bytes.size() / 150);
        for (size_t length = 0; length < bytes.size(); length += step) {
            const std::filesystem::path path = Write("prefix.nc", bytes.substr(0, length));
            try {
                Open(path);
            } catch (const std::exception&) {
            } catch (const char*) {
            }
        }
    }
}

// A plain HDF5 file made through the HDF5 library that netCDF-C already loaded; skipped when its
// entry points are not visible.
TEST_F(BadInputTest, PlainHdf5File) {
    using Create = int64_t (*)(const char*, unsigned, int64_t, int64_t);
    using GroupCreate = int64_t (*)(int64_t, const char*, int64_t, int64_t, int64_t);
    using Close = int (*)(int64_t);
    const auto create = reinterpret_cast<Create>(dlsym(RTLD_DEFAULT, "H5Fcreate"));
    const auto groupCreate = reinterpret_cast<GroupCreate>(dlsym(RTLD_DEFAULT, "H5Gcreate2"));
    const auto groupClose = reinterpret_cast<Close>(dlsym(RTLD_DEFAULT, "H5Gclose"));
    const auto close = reinterpret_cast<Close>(dlsym(RTLD_DEFAULT, "H5Fclose"));
    if (create == nullptr || groupCreate == nullptr || groupClose == nullptr || close == nullptr) {
        GTEST_SKIP() << "HDF5 entry points not visible";
    }
    const std::filesystem::path path = m_dir / "plain.h5";
    const int64_t file = create(path.c_str(), 2u /* H5F_ACC_TRUNC */, 0, 0);
    ASSERT_GE(file, 0);
    const int64_t group = groupCreate(file, "g", 0, 0, 0);
    ASSERT_GE(group, 0);
    groupClose(group);
    close(file);
    try {
        const auto files = Open(path);
        EXPECT_LE(files.size(), 2u);
    } catch (const Exception& e) {
        EXPECT_EQ(e.NcPath(), path);
    }
}

TEST(UnsupportedContentTest, FailWholeFile) {
    const auto expectRuntimeError = [](const std::string& name, const char* text) {
        try {
            Open(DataPath(name));
            ADD_FAILURE() << name << " opened";
        } catch (const std::runtime_error& e) {
            EXPECT_STREQ(e.what(), text) << name;
        }
    };
    expectRuntimeError("ncfile_ushort.nc", "unimplemented attribute value type");
    expectRuntimeError("ncfile_ushortvar.nc", "invalid variable type");
    try {
        Open(DataPath("ncfile_badscale.nc"));
        ADD_FAILURE() << "text scale_factor accepted";
    } catch (const char* text) {
        EXPECT_STREQ(text, "s_ChangeType failed");
    }
}

}  // namespace
