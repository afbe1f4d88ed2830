#include <zorvodsg/host/SystemTime.h>

#include <gtest/gtest.h>

using ZorvoDSG::Host::FILETIME;
using ZorvoDSG::Host::FileTimeToUInt64;
using ZorvoDSG::Host::SYSTEMTIME;
using ZorvoDSG::Host::SystemTimeToFileTime;

namespace {

SYSTEMTIME Date(uint16_t y, uint16_t mo, uint16_t d, uint16_t h = 0, uint16_t mi = 0, uint16_t s = 0,
                uint16_t ms = 0) {
    return SYSTEMTIME{y, mo, 0, d, h, mi, s, ms};
}

// Ticks of a date, or 0 when it is refused.
uint64_t Ticks(const SYSTEMTIME& st) {
    FILETIME ft{};
    return SystemTimeToFileTime(st, ft) ? FileTimeToUInt64(ft) : 0;
}

bool Valid(const SYSTEMTIME& st) {
    FILETIME ft{};
    return SystemTimeToFileTime(st, ft);
}

constexpr uint64_t kTicksPerDay = 864'000'000'000;

TEST(SystemTimeToFileTime, ExactTicks) {
    EXPECT_EQ(Ticks(Date(1601, 1, 1)), 0u);  // refused dates also give 0, so check validity too
    EXPECT_TRUE(Valid(Date(1601, 1, 1)));
    EXPECT_EQ(Ticks(Date(1970, 1, 1)), 116444736000000000u);
    EXPECT_EQ(Ticks(Date(1970, 1, 1, 0, 0, 1, 1)), 116444736000000000u + 10'010'000u);
    EXPECT_EQ(Ticks(Date(2000, 1, 1, 12, 0, 0)), 125911584000000000u + 12u * 36'000'000'000u);
    EXPECT_EQ(Ticks(Date(30827, 12, 31, 23, 59, 59, 999)), 0x7FFF35F4F06C58F0u);
}

TEST(SystemTimeToFileTime, LeapYears) {
    EXPECT_FALSE(Valid(Date(1900, 2, 29)));
    EXPECT_TRUE(Valid(Date(2000, 2, 29)));
    EXPECT_TRUE(Valid(Date(2024, 2, 29)));
    EXPECT_FALSE(Valid(Date(2023, 2, 29)));
    EXPECT_EQ(Ticks(Date(1900, 3, 1)) - Ticks(Date(1900, 2, 28)), kTicksPerDay);
    EXPECT_EQ(Ticks(Date(2000, 3, 1)) - Ticks(Date(2000, 2, 28)), 2 * kTicksPerDay);
}

TEST(SystemTimeToFileTime, RefusesFieldsOutOfRange) {
    EXPECT_FALSE(Valid(Date(2000, 2, 31)));
    EXPECT_FALSE(Valid(Date(2000, 4, 31)));
    EXPECT_TRUE(Valid(Date(2000, 12, 31)));
    EXPECT_FALSE(Valid(Date(2000, 0, 1)));
    EXPECT_FALSE(Valid(Date(2000, 13, 1)));
    EXPECT_FALSE(Valid(Date(2000, 1, 0)));
    EXPECT_FALSE(Valid(Date(1600, 12, 31, 23, 59, 59, 999)));
    EXPECT_FALSE(Valid(Date(30828, 1, 1)));
    EXPECT_FALSE(Valid(Date(2000, 1, 1, 24)));
    EXPECT_FALSE(Valid(Date(2000, 1, 1, 0, 60)));
    EXPECT_FALSE(Valid(Date(2000, 1, 1, 0, 0, 60)));
    EXPECT_FALSE(Valid(Date(2000, 1, 1, 0, 0, 0, 1000)));

    FILETIME ft{7, 9};
    EXPECT_FALSE(SystemTimeToFileTime(Date(2000, 2, 30), ft));
    EXPECT_EQ(ft.dwLowDateTime, 7u);  // untouched on failure
    EXPECT_EQ(ft.dwHighDateTime, 9u);
}

TEST(SystemTimeToFileTime, IgnoresDayOfWeek) {
    SYSTEMTIME st = Date(1970, 1, 1);
    st.wDayOfWeek = 65535;
    EXPECT_EQ(Ticks(st), 116444736000000000u);
}

}  // namespace
