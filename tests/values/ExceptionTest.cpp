#include <zorvodsg/values/Exception.h>

#include <gtest/gtest.h>
#include <netcdf.h>

#include <zorvodsg/host/Utf8.h>
#include <zorvodsg/values/NetCDFWorkspaceLog.h>

using ZorvoDSG::Host::Utf8ToWide;

namespace ZorvoNetCDFDSG {

// The private controls of the log, for the tests.
struct NetCDFWorkspaceLogAccess {
    static void EnableLogging(NetCDFWorkspaceLog& log, bool enable) { log.EnableLogging(enable); }
    static void Clear(NetCDFWorkspaceLog& log) { log.Clear(); }
};

namespace {

using ZorvoDSG::Exception;
using ZorvoDSG::System::Message;

std::wstring Text(long code) { return Exception::s_NcErrToWString(code).Str(); }

TEST(Exception, ToStringJoinsTextDetailAndPath) {
    const Exception e(ZorvoDSG::eVariableNotFound, L"temp", "a.nc");
    EXPECT_EQ(e.ToString().Str(), L"eVariableNotFound: variable not found in nc file: temp: a.nc");
    EXPECT_EQ(e.NcErr(), -10022);
    EXPECT_EQ(e.wsDetail(), L"temp");
    EXPECT_EQ(e.NcPath(), "a.nc");
    EXPECT_STREQ(e.what(), "netcdf error");

    const Exception status(NC_ENOTNC, L"", {});
    EXPECT_EQ(status.ToString().Str(), Utf8ToWide(nc_strerror(NC_ENOTNC)) + L": : ");

    // Non-ASCII and even undecodable path bytes still print.
    const Exception accented(ZorvoDSG::eInternalError, L"d\u00E9tail", "/data/m\xC3\xA9t\xC3\xA9o/\xFF.nc");
    EXPECT_EQ(accented.ToString().Str(), Text(ZorvoDSG::eInternalError) + L": d\u00E9tail: /data/m\u00E9t\u00E9o/\uFFFD.nc");

    Exception copy = e;
    copy = status;
    EXPECT_EQ(copy.NcErr(), NC_ENOTNC);
    EXPECT_STREQ(copy.what(), "netcdf error");
}

TEST(Exception, CodeTexts) {
    EXPECT_EQ(Text(-10018), L"unrecognized error");
    EXPECT_EQ(Text(-10000), L"unrecognized error");
    EXPECT_EQ(Text(-200000), L"unrecognized error");
    EXPECT_EQ(Text(ZorvoDSG::eInternalError),
              L"eInternalError: an internal error in the DSG conversion library was detected");
    EXPECT_EQ(Text(-109999), L"The input nc file does not conform to the CF Discrete Sampling Geometry conventions.");
    EXPECT_EQ(Text(-10047), L"The number of instance dimensions is not compatible with number of observation "
                            L"dimensions. Check which variable has been assigned the cf_role attribute.");
    EXPECT_EQ(Text(-10004), L"eRowCountDimension:  all row count variables need to have one dimension");
    EXPECT_EQ(Text(-9999), Utf8ToWide(nc_strerror(-9999)));
    EXPECT_EQ(Text(NC_NOERR), Utf8ToWide(nc_strerror(NC_NOERR)));
    EXPECT_EQ(ZorvoDSG::ErrorResourceId(ZorvoDSG::eMissingCoordinates), 124);
    EXPECT_EQ(ZorvoDSG::ErrorResourceId(ZorvoDSG::eInvalidNcML), 131);
    EXPECT_EQ(ZorvoDSG::ErrorResourceId(ZorvoDSG::eHigherDimensionStrings), 135);
    // Every code of the table has its own text.
    for (long code = -10001; code >= -10047; --code) {
        const int id = ZorvoDSG::ErrorResourceId(code);
        const bool bUnused = code == -10018 || code == -10019 || code == -10023 || code == -10024;
        EXPECT_EQ(id == 134, bUnused) << code;
        EXPECT_FALSE(Text(code).empty()) << code;
    }
}

TEST(NetCDFWorkspaceLog, FindsMessagesByCodeRangeInOrder) {
    NetCDFWorkspaceLog log;
    EXPECT_TRUE(log.FindMessageRange(0, 100).empty());
    log.AddMessage(5, L"first");
    log.AddMessage(1, L"open");
    log.AddMessage(5, L"second");
    log.AddMessage(17, L"lat");
    ASSERT_EQ(log.cMessages(), 4);
    const ZorvoDSG::System::ILog& reader = log;  // reading needs no mutable log
    EXPECT_EQ(reader.GetMessage(3).Text(), L"lat");
    EXPECT_THROW(reader.GetMessage(4), std::out_of_range);
    EXPECT_THROW(reader.GetMessage(-1), std::out_of_range);

    const auto fives = reader.FindMessageRange(5, 5);
    ASSERT_EQ(fives.size(), 2u);
    EXPECT_EQ(fives[0].Text(), L"first");
    EXPECT_EQ(fives[1].Text(), L"second");
    EXPECT_EQ(log.FindMessageRange(1, 17).size(), 4u);
    EXPECT_TRUE(log.FindMessageRange(10, 1).empty());
    EXPECT_TRUE(log.FindMessageRange(6, 16).empty());
}

TEST(NetCDFWorkspaceLog, DisabledLoggingAndClear) {
    NetCDFWorkspaceLog log;
    log.AddMessage(1, L"a");
    NetCDFWorkspaceLogAccess::EnableLogging(log, false);
    log.AddMessage(2, L"dropped");
    EXPECT_EQ(log.cMessages(), 1);

    NetCDFWorkspaceLog copy = log;  // copies the flag too
    copy.AddMessage(3, L"dropped");
    EXPECT_EQ(copy.cMessages(), 1);

    NetCDFWorkspaceLogAccess::Clear(log);
    EXPECT_EQ(log.cMessages(), 0);
    log.AddMessage(4, L"still dropped");
    EXPECT_EQ(log.cMessages(), 0);
    NetCDFWorkspaceLogAccess::EnableLogging(log, true);
    log.AddMessage(4, L"kept");
    EXPECT_EQ(log.GetMessage(0).Code(), 4);
}

}  // namespace
}  // namespace ZorvoNetCDFDSG
