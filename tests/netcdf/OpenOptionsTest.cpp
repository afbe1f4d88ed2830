// Options given to NetCDFFile::s_Open reach the classification of every dataset it makes, and the
// default options read time units strictly.

#include <gtest/gtest.h>

#include <string>
#include <utility>

#include <zorvodsg/host/SystemTime.h>
#include "netcdf/NcFileTestSupport.h"
#include <zorvodsg/values/Exception.h>

using ZorvoDSG::Host::FILETIME;
using ZorvoDSG::Host::FileTimeToUInt64;
using ZorvoDSG::Host::SYSTEMTIME;
using ZorvoDSG::Host::SystemTimeToFileTime;

namespace {

using namespace ZorvoDSG::SpaceTime;
using ZorvoNetCDFDSG::NetCDFFile;
using ZorvoNetCDFDSG::OpenOptions;
using ncfile_test::DataPath;
using ncfile_test::IsoTimeUnits;

uint64_t TicksOf(uint16_t y, uint16_t mo, uint16_t d, uint16_t h = 0, uint16_t mi = 0, uint16_t s = 0) {
    FILETIME ft{};
    EXPECT_TRUE(SystemTimeToFileTime(SYSTEMTIME{y, mo, 0, d, h, mi, s, 0}, ft));
    return FileTimeToUInt64(ft);
}

// Code and detail of the Exception that opening raises; code 0 when the file opens.
std::pair<long, std::wstring> Refusal(const std::string& name, const OpenOptions& options) {
    try {
        ncfile_test::Open(DataPath(name), nullptr, options);
    } catch (const ZorvoDSG::Exception& e) {
        return {e.NcErr(), e.wsDetail()};
    }
    return {0, {}};
}

void ExpectTime(const NetCDFFile& file, const std::string& name, uint64_t baseTicks, double offset) {
    const auto it = file.Name2CoordVar().find(name);
    ASSERT_NE(it, file.Name2CoordVar().end()) << name;
    EXPECT_EQ(it->second.role, eCoordinateT) << name;
    EXPECT_EQ(FileTimeToUInt64(it->second.timeReference.BaseTime()), baseTicks) << name;
    EXPECT_EQ(it->second.timeReference.ZoneOffsetSeconds(), offset) << name;
}

class IsoTimeUnitsOpen : public ::testing::TestWithParam<std::string> {
protected:
    std::string FileName() const { return GetParam() + ".nc"; }
};

TEST_P(IsoTimeUnitsOpen, FileWithoutGroups) {
    const std::pair<long, std::wstring> strict{ZorvoDSG::eBadTimeZoneOffset, L"+0530"};
    EXPECT_EQ(Refusal(FileName(), OpenOptions()), strict);
    {
        ZorvoNetCDFDSG::NetCDFWorkspaceLog log;
        EXPECT_THROW(NetCDFFile::s_Open(DataPath(FileName()), 1, nullptr, log), ZorvoDSG::Exception);
    }

    const auto files = ncfile_test::Open(DataPath(FileName()), nullptr, IsoTimeUnits());
    ASSERT_EQ(files.size(), 1u);
    ExpectTime(*files[0], "time", TicksOf(2021, 6, 1, 2), 0.0);              // by standard name
    ExpectTime(*files[0], "obs_time", TicksOf(2000, 1, 1, 6, 30), 19800.0);  // by units alone
}

INSTANTIATE_TEST_SUITE_P(ClassicAndNetCDF4, IsoTimeUnitsOpen, testing::Values("ncmeta_isotime", "ncmeta_isotime_nc4"));

TEST(IsoTimeUnitsOpenGroups, EveryGroupReadsIsoTimes) {
    const std::pair<long, std::wstring> strict{ZorvoDSG::eBadTimeZoneOffset, L"Z"};
    EXPECT_EQ(Refusal("ncmeta_isotime_groups.nc", OpenOptions()), strict);

    const auto files = ncfile_test::Open(DataPath("ncmeta_isotime_groups.nc"), nullptr, IsoTimeUnits());
    ASSERT_EQ(files.size(), 2u);
    EXPECT_EQ(files[0]->FullGroupName(), "/obs/");
    ExpectTime(*files[0], "obs_time", TicksOf(2019, 4, 10, 13, 0, 25), 0.0);
    ExpectTime(*files[1], "time", TicksOf(1990, 1, 1), 0.0);
}

}  // namespace
