#include <zorvodsg/spacetime/UnitSystem.h>

#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <cstdlib>
#include <latch>
#include <string>
#include <thread>
#include <vector>

#include <zorvodsg/spacetime/TimeUnits.h>
#include <zorvodsg/spacetime/VerticalUnits.h>
#include <zorvodsg/values/Exception.h>

using ZorvoDSG::Host::FileTimeToUInt64;

namespace {

using namespace ZorvoDSG;
using namespace ZorvoDSG::SpaceTime;

const std::filesystem::path kDatabase = ZDSG_UDUNITS2_XML;
const std::filesystem::path kMissing = "/nonexistent/udunits2.xml";

class Units : public ::testing::Test {
protected:
    static void SetUpTestSuite() { s_InitUDUnits2(kDatabase); }
};

TEST_F(Units, ParseAndClassify) {
    EXPECT_TRUE(ParseUnit("m"));
    EXPECT_TRUE(ParseUnit("  dbar\t"));
    EXPECT_TRUE(IsPressureUnit(ParseUnit("\n dbar")));
    EXPECT_FALSE(IsLengthUnit(ParseUnit(" \t")));  // UDUNITS-2 reads blank as the dimensionless one
    EXPECT_FALSE(ParseUnit("no_such_unit"));
    EXPECT_FALSE(ParseUnit("m m m )"));

    EXPECT_TRUE(IsPressureUnit(ParseUnit("hPa")));
    EXPECT_TRUE(IsPressureUnit(ParseUnit("dbar")));
    EXPECT_FALSE(IsPressureUnit(ParseUnit("m")));
    EXPECT_FALSE(IsPressureUnit(Unit()));

    EXPECT_TRUE(IsLengthUnit(ParseUnit("ft")));
    EXPECT_FALSE(IsLengthUnit(ParseUnit("hPa")));
    EXPECT_FALSE(IsLengthUnit(Unit()));

    EXPECT_TRUE(IsTimeUnit(ParseUnit("seconds since 1970-01-01")));
    EXPECT_TRUE(IsTimeUnit(ParseUnit("hours since 2000-01-01 06:30:00 +05:30")));
    EXPECT_FALSE(IsTimeUnit(ParseUnit("s")));  // a duration has no origin
    EXPECT_FALSE(IsTimeUnit(ParseUnit("m")));
    EXPECT_FALSE(IsTimeUnit(Unit()));
}

TEST_F(Units, PressureQueries) {
    EXPECT_TRUE(bPressureUnits("dbar"));
    EXPECT_FALSE(bPressureUnits("m"));
    EXPECT_FALSE(bPressureUnits("garbage!"));
    EXPECT_DOUBLE_EQ(_1Pascal("hPa"), 0.01);
    EXPECT_DOUBLE_EQ(_1Pascal("dbar"), 0.0001);
    EXPECT_DOUBLE_EQ(_1Pascal("Pa"), 1.0);
    for (const char* units : {"m", "garbage!", ""}) {
        try {
            _1Pascal(units);
            ADD_FAILURE() << units;
        } catch (const Exception&) {
            ADD_FAILURE() << units;
        } catch (const std::runtime_error& e) {
            EXPECT_STREQ(e.what(), "not pressure units");
        }
    }
}

TEST_F(Units, ZUnits) {
    EXPECT_EQ(ZUnits("m"), std::make_pair(std::string("Meter"), 1.0));
    EXPECT_DOUBLE_EQ(ZUnits("ft").second, 0.3048);
    EXPECT_EQ(ZUnits(" meters ").first, "Meter");
    EXPECT_DOUBLE_EQ(ZUnits("km").second, 1000.0);

    try {
        ZUnits("dbar");
        ADD_FAILURE();
    } catch (const Exception& e) {
        EXPECT_EQ(e.NcErr(), eBadUnitConversion);
        EXPECT_TRUE(e.wsDetail().ends_with(L" to meters")) << e.wsDetail().size();
        EXPECT_GT(e.wsDetail().size(), std::wstring(L" to meters").size());
        EXPECT_TRUE(e.NcPath().empty());
    }
    try {
        ZUnits("garbage!");
        ADD_FAILURE();
    } catch (const Exception& e) {
        EXPECT_EQ(e.NcErr(), eInternalError);
        EXPECT_EQ(e.wsDetail(), L"cannot get long name of unit");
    }
}

TEST_F(Units, LaterInitWithWrongPathDoesNothing) {
    EXPECT_NO_THROW(s_InitUDUnits2(kMissing));
    EXPECT_TRUE(ParseUnit("m"));
}

// The cases below need a process whose unit system is not loaded yet: each runs in a fresh child.
class UnitsFreshProcessDeathTest : public ::testing::Test {
protected:
    void SetUp() override { GTEST_FLAG_SET(death_test_style, "threadsafe"); }
};

// Exit codes name the first check that failed.
[[noreturn]] void BeforeAndAfterInit() {
    if (ParseUnit("m")) std::exit(1);
    try {
        s_InitUDUnits2(kMissing);
        std::exit(2);
    } catch (const Exception& e) {
        if (e.NcErr() != eInternalError || e.wsDetail() != L"udunits initialization failure" || e.NcPath() != kMissing)
            std::exit(3);
    }
    if (ParseUnit("m")) std::exit(4);
    // Time units do not go through the unit system.
    if (ParseTimeUnits("days since 1970-01-01").timeUnit() != eTimeDay) std::exit(5);
    s_InitUDUnits2(kDatabase);  // a failed load may be retried
    if (!ParseUnit("m")) std::exit(6);
    std::exit(0);
}

TEST_F(UnitsFreshProcessDeathTest, NothingParsesBeforeInitAndFailedInitRetries) {
    EXPECT_EXIT(BeforeAndAfterInit(), ::testing::ExitedWithCode(0), "");
}

[[noreturn]] void ConcurrentFirstInit() {
    constexpr int kThreads = 8;
    std::latch start(kThreads);
    std::vector<int> ok(kThreads, 0);
    std::vector<std::thread> threads;
    for (int i = 0; i < kThreads; ++i) {
        threads.emplace_back([&, i] {
            start.arrive_and_wait();
            try {
                s_InitUDUnits2(kDatabase);
                ok[i] = IsPressureUnit(ParseUnit("hPa")) && std::fabs(ZUnits("ft").second - 0.3048) < 1e-12;
            } catch (...) {
            }
        });
    }
    for (auto& t : threads) t.join();
    for (int v : ok)
        if (!v) std::exit(1);
    std::exit(0);
}

TEST_F(UnitsFreshProcessDeathTest, ConcurrentFirstInit) {
    EXPECT_EXIT(ConcurrentFirstInit(), ::testing::ExitedWithCode(0), "");
}

// A locale whose decimal separator is a comma, or null when none is installed.
const char* CommaLocale() {
    const std::string previous = std::setlocale(LC_NUMERIC, nullptr);
    const char* found = nullptr;
    for (const char* name : {"de_DE.UTF-8", "de_DE.utf8", "de_DE", "fr_FR.UTF-8", "fr_FR.utf8", "nl_NL.UTF-8"}) {
        if (std::setlocale(LC_NUMERIC, name) != nullptr && std::localeconv()->decimal_point[0] == ',') {
            found = name;
            break;
        }
    }
    std::setlocale(LC_NUMERIC, previous.c_str());
    return found;
}

[[noreturn]] void InitUnderLocale(const char* name) {
    if (std::setlocale(LC_ALL, name) == nullptr) std::exit(1);
    const std::string before = std::setlocale(LC_NUMERIC, nullptr);
    try {
        s_InitUDUnits2(kDatabase);
    } catch (...) {
        std::exit(2);
    }
    if (before != std::setlocale(LC_NUMERIC, nullptr)) std::exit(3);
    if (std::fabs(ZUnits("ft").second - 0.3048) > 1e-12) std::exit(4);  // "2.54 cm" in the database
    const TimeReference t = ParseTimeUnits("seconds since 1970-01-01 00:00:00.5");
    if (FileTimeToUInt64(t.BaseTime()) != 116444736000000000u + 5'000'000u) std::exit(5);
    std::exit(0);
}

TEST_F(UnitsFreshProcessDeathTest, InitUnderCommaDecimalLocale) {
    const char* name = CommaLocale();
    ASSERT_NE(name, nullptr) << "no locale with a decimal comma: install Debian's locales-all (scripts/install-deps.sh)";
    EXPECT_EXIT(InitUnderLocale(name), ::testing::ExitedWithCode(0), "");
}

}  // namespace
