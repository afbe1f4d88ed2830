#include <zorvodsg/spacetime/TimeUnits.h>

#include <gtest/gtest.h>

#include <stdexcept>

#include <zorvodsg/host/SystemTime.h>
#include <zorvodsg/values/Exception.h>

using ZorvoDSG::Host::FILETIME;
using ZorvoDSG::Host::FileTimeToUInt64;
using ZorvoDSG::Host::SYSTEMTIME;
using ZorvoDSG::Host::SystemTimeToFileTime;

namespace {

using namespace ZorvoDSG;
using namespace ZorvoDSG::SpaceTime;

constexpr uint64_t kTicksPerSecond = 10'000'000;

uint64_t TicksOf(uint16_t y, uint16_t mo, uint16_t d, uint16_t h = 0, uint16_t mi = 0, uint16_t s = 0) {
    FILETIME ft{};
    EXPECT_TRUE(SystemTimeToFileTime(SYSTEMTIME{y, mo, 0, d, h, mi, s, 0}, ft));
    return FileTimeToUInt64(ft);
}

uint64_t Convert(const std::string& units, double value) {
    return FileTimeToUInt64(ParseTimeUnits(units).ToFileTime(value));
}

// The code and detail of the Exception `units` raises, or code 0.
std::pair<long, std::wstring> Failure(const std::string& units) {
    try {
        ParseTimeUnits(units);
    } catch (const Exception& e) {
        EXPECT_TRUE(e.NcPath().empty());
        return {e.NcErr(), e.wsDetail()};
    }
    return {0, {}};
}

TEST(ParseTimeUnits, UnitWords) {
    const std::pair<const char*, eTimeUnit> cases[] = {
        {"years", eTimeYear},     {"YEAR", eTimeYear},       {"months", eTimeMonth},  {"day", eTimeDay},
        {"Days", eTimeDay},       {"d", eTimeDay},           {"D", eTimeDay},         {"hours", eTimeHour},
        {"hr", eTimeHour},        {"h", eTimeHour},          {"minutes", eTimeMinute}, {"min", eTimeMinute},
        {"Seconds", eTimeSecond}, {"sec", eTimeSecond},      {"s", eTimeSecond},      {"secondsx", eTimeSecond},
    };
    for (const auto& [word, unit] : cases) {
        EXPECT_EQ(ParseTimeUnits(std::string(word) + " since 1970-01-01").timeUnit(), unit) << word;
    }
    for (const char* word : {"mins", "hrs", "milliseconds", "dd", "fortnights", "m"}) {
        EXPECT_EQ(Failure(std::string(word) + " since 1970-01-01").first, eBadTimeUnits) << word;
    }
}

TEST(ParseTimeUnits, Grammar) {
    const uint64_t epoch = TicksOf(1970, 1, 1);
    const TimeReference days = ParseTimeUnits("days since 1970-01-01");
    EXPECT_EQ(days.timeUnit(), eTimeDay);
    EXPECT_EQ(FileTimeToUInt64(days.BaseTime()), epoch);
    EXPECT_EQ(days.ZoneOffsetSeconds(), 0.0);
    EXPECT_EQ(FileTimeToUInt64(days.ToFileTime(1.5)), TicksOf(1970, 1, 2, 12));

    // "since" is case-sensitive, the unit word is not; separators may carry white space.
    EXPECT_EQ(Failure("Days Since 1970-01-01"),
              std::make_pair(long{eBadTimeUnits}, std::wstring(L"Days Since 1970-01-01")));
    EXPECT_EQ(ParseTimeUnits("DAYS since 1970-01-01").timeUnit(), eTimeDay);
    EXPECT_EQ(Convert("  hours   since 1999 - 12 - 31   23 : 59 : 59 ", 0), TicksOf(1999, 12, 31, 23, 59, 59));
    EXPECT_EQ(Convert("hours since1999-12-31 6:5", 0), TicksOf(1999, 12, 31, 6, 5));
    EXPECT_EQ(Convert("days since 1970-1-2", 0), TicksOf(1970, 1, 2));

    EXPECT_EQ(Failure("days").first, eBadTimeUnits);
    EXPECT_EQ(Failure("").first, eBadTimeUnits);
    EXPECT_EQ(Failure("days since 1970-01").first, eBadTimeUnits);
    EXPECT_EQ(Failure("days since 1970/01/01").first, eBadTimeUnits);
}

TEST(ParseTimeUnits, TSeparatorAndZ) {
    // A "T" ends the scan after the day: the time of day and the zone are dropped.
    const TimeReference t = ParseTimeUnits("seconds since 2000-01-01T12:00:00Z");
    EXPECT_EQ(FileTimeToUInt64(t.BaseTime()), TicksOf(2000, 1, 1));
    EXPECT_EQ(t.ZoneOffsetSeconds(), 0.0);
    // "Z" after the seconds is read as the zone text.
    EXPECT_EQ(Failure("seconds since 2000-01-01 00:00:00Z"),
              std::make_pair(long{eBadTimeZoneOffset}, std::wstring(L"Z")));
}

TEST(ParseTimeUnits, ZoneOffsets) {
    const TimeReference east = ParseTimeUnits("hours since 2000-01-01 06:30:00 +05:30");
    EXPECT_EQ(east.ZoneOffsetSeconds(), 19800.0);
    EXPECT_EQ(FileTimeToUInt64(east.ToFileTime(0)), TicksOf(2000, 1, 1, 1, 0));

    EXPECT_EQ(ParseTimeUnits("seconds since 1970-01-01 00:00:00 UTC").ZoneOffsetSeconds(), 0.0);
    EXPECT_EQ(ParseTimeUnits("seconds since 1970-01-01 00:00:00 utc").ZoneOffsetSeconds(), 0.0);
    EXPECT_EQ(ParseTimeUnits("seconds since 1970-01-01 00:00:00 -05:30").ZoneOffsetSeconds(), -19800.0);
    EXPECT_EQ(ParseTimeUnits("seconds since 1970-01-01 00:00:00 -00:30").ZoneOffsetSeconds(), -1800.0);
    EXPECT_EQ(ParseTimeUnits("seconds since 1970-01-01 00:00:00 5:00").ZoneOffsetSeconds(), 18000.0);
    EXPECT_EQ(Convert("seconds since 1970-01-01 00:00:00 -05:30", 0), TicksOf(1970, 1, 1, 5, 30));

    EXPECT_EQ(Failure("seconds since 1970-01-01 00:00:00 -05:-30"),
              std::make_pair(long{eBadTimeZoneOffset}, std::wstring(L"-05:-30")));
    EXPECT_EQ(Failure("seconds since 1970-01-01 00:00:00 +0000").first, eBadTimeZoneOffset);
    EXPECT_EQ(Failure("seconds since 1970-01-01 00:00:00 GMT").first, eBadTimeZoneOffset);
}

TEST(ParseTimeUnits, BadReferenceDates) {
    for (const char* units : {"days since 1-1-1", "days since 0000-01-01", "days since 1970-13-01",
                              "days since 1970-01-00", "days since 1900-02-29", "days since 2001-02-31",
                              "days since 1970-01-01 24:00:00", "days since 1970-01-01 00:00:60",
                              "days since 1970-01-01 00:00:-0.5", "days since 1970-01-01 00:00:nan",
                              "days since -1970-01-01"}) {
        const auto [code, detail] = Failure(units);
        EXPECT_EQ(code, eBadTimeReference) << units;
        EXPECT_EQ(detail.size(), std::string(units).size()) << units;
    }
    EXPECT_EQ(Convert("days since 2000-02-29", 0), TicksOf(2000, 2, 29));
    // The calendar check comes before the unit word.
    EXPECT_EQ(Failure("fortnights since 0000-01-01").first, eBadTimeReference);
}

TEST(TimeReference, MonthsAndYears) {
    const uint64_t base = TicksOf(2000, 1, 1);
    // 365.242198781 / 12 days = 2629743.83... s, truncated
    EXPECT_EQ(Convert("months since 2000-01-01", 1), base + 2629743 * kTicksPerSecond);
    EXPECT_EQ(Convert("years since 2000-01-01", 1), base + 31556925 * kTicksPerSecond);
    EXPECT_EQ(Convert("minutes since 2000-01-01", 1.5), base + 90 * kTicksPerSecond);
}

TEST(TimeReference, TruncatesToWholeSeconds) {
    const uint64_t base = TicksOf(1970, 1, 1);
    EXPECT_EQ(Convert("seconds since 1970-01-01", -0.5), base);
    EXPECT_EQ(Convert("seconds since 1970-01-01", -1.5), base - kTicksPerSecond);
    EXPECT_EQ(Convert("seconds since 1970-01-01", 0.999), base);
    // Days are multiplied by 24, 60 and 60 one after the other; one factor of 86400 would round up.
    EXPECT_EQ(Convert("days since 1970-01-01", 0.38730324074074074), base + 33462 * kTicksPerSecond);
    // Milliseconds of the reference are kept, finer digits dropped.
    EXPECT_EQ(Convert("seconds since 1970-01-01 00:00:00.2505", 0), base + 250 * 10'000);
    // Before 1601 the 64-bit arithmetic wraps.
    EXPECT_EQ(Convert("seconds since 1601-01-01", -1), uint64_t{0} - kTicksPerSecond);
}

TEST(TimeReference, DefaultAndUnimplementedUnits) {
    const TimeReference none;
    EXPECT_EQ(none.timeUnit(), eTimeNone);
    EXPECT_EQ(FileTimeToUInt64(none.BaseTime()), 0u);
    EXPECT_EQ(none.ZoneOffsetSeconds(), 0.0);

    auto message = [](eTimeUnit unit) -> std::string {
        try {
            TimeReference(unit, FILETIME{}, 0.0).ToFileTime(1.0);
        } catch (const std::runtime_error& e) {
            return e.what();
        }
        return "no exception";
    };
    EXPECT_EQ(message(eTimeNone), "invalid time unit");
    EXPECT_EQ(message(static_cast<eTimeUnit>(11)), "invalid time unit");
    EXPECT_EQ(message(eTimeCommonYear), "common year not impl");
    EXPECT_EQ(message(eTimeLeapYear), "leap year not impl");
    EXPECT_EQ(message(eTimeJulianYear), "julian year not impl");
    EXPECT_EQ(message(eTimeGregorianYear), "gregorian year not impl");
}

}  // namespace
