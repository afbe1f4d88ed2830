// The two readings of time units side by side: the strict grammar and the one that adds ISO 8601.

#include <gtest/gtest.h>

#include <ostream>
#include <string>

#include <zorvodsg/host/SystemTime.h>
#include <zorvodsg/spacetime/TimeUnits.h>
#include <zorvodsg/values/Exception.h>

using ZorvoDSG::Host::FILETIME;
using ZorvoDSG::Host::FileTimeToUInt64;
using ZorvoDSG::Host::SYSTEMTIME;
using ZorvoDSG::Host::SystemTimeToFileTime;

namespace {

using namespace ZorvoDSG;
using namespace ZorvoDSG::SpaceTime;

// What one reading made of a units text: a TimeReference, or the code and detail of its Exception.
struct Reading {
    long error = 0;
    std::wstring detail;  // an empty detail matches any
    eTimeUnit unit = eTimeNone;
    uint64_t baseTicks = 0;
    double offset = 0.0;
};

bool operator==(const Reading& a, const Reading& b) {
    if (a.error != 0 || b.error != 0) {
        return a.error == b.error && (a.detail.empty() || b.detail.empty() || a.detail == b.detail);
    }
    return a.unit == b.unit && a.baseTicks == b.baseTicks && a.offset == b.offset;
}

void PrintTo(const Reading& r, std::ostream* out) {
    if (r.error != 0) {
        *out << "error " << r.error << " \"" << std::string(r.detail.begin(), r.detail.end()) << '"';
    } else {
        *out << "unit " << r.unit << ", base ticks " << r.baseTicks << ", offset " << r.offset;
    }
}

Reading Read(TimeReference (*parse)(const std::string&), const std::string& units) {
    Reading reading;
    try {
        const TimeReference reference = parse(units);
        reading.unit = reference.timeUnit();
        reading.baseTicks = FileTimeToUInt64(reference.BaseTime());
        reading.offset = reference.ZoneOffsetSeconds();
    } catch (const Exception& e) {
        reading.error = e.NcErr();
        reading.detail = e.wsDetail();
    }
    return reading;
}

// A reading that succeeds: base time as y-mo-d h:mi:s.ms, offset in seconds east.
Reading At(eTimeUnit unit, uint16_t y, uint16_t mo, uint16_t d, uint16_t h = 0, uint16_t mi = 0, uint16_t s = 0,
           uint16_t ms = 0, double offset = 0.0) {
    FILETIME ft{};
    EXPECT_TRUE(SystemTimeToFileTime(SYSTEMTIME{y, mo, 0, d, h, mi, s, ms}, ft));
    Reading reading;
    reading.unit = unit;
    reading.baseTicks = FileTimeToUInt64(ft);
    reading.offset = offset;
    return reading;
}

Reading Refused(long code, const wchar_t* detail = L"") {
    Reading reading;
    reading.error = code;
    reading.detail = detail;
    return reading;
}

struct Row {
    const char* units;
    Reading strict;
    Reading iso;
};

void ExpectReadings(const Row& row) {
    EXPECT_EQ(Read(&ParseTimeUnits, row.units), row.strict) << "strict: " << row.units;
    EXPECT_EQ(Read(&ParseIsoTimeUnits, row.units), row.iso) << "ISO: " << row.units;
}

TEST(TimeUnitsReadings, IsoFormsTheStrictReadingDropsOrRefuses) {
    const Row rows[] = {
        // A "T" ends the strict scan: the time of day and the zone are lost.
        {"seconds since 2021-06-01T02:00:00", At(eTimeSecond, 2021, 6, 1), At(eTimeSecond, 2021, 6, 1, 2)},
        {"seconds since 1970-01-01T00:00:00Z", At(eTimeSecond, 1970, 1, 1), At(eTimeSecond, 1970, 1, 1)},
        {"days since 2000-01-01t12:00:00z", At(eTimeDay, 2000, 1, 1), At(eTimeDay, 2000, 1, 1, 12)},
        {"hours since 2000-01-01T06:30:00+05:30", At(eTimeHour, 2000, 1, 1),
         At(eTimeHour, 2000, 1, 1, 6, 30, 0, 0, 19800)},
        {"seconds since 1999-12-31T23:59:59.999-01:00", At(eTimeSecond, 1999, 12, 31),
         At(eTimeSecond, 1999, 12, 31, 23, 59, 59, 999, -3600)},
        {"hours since 2020-02-29T23:59:59Z", At(eTimeHour, 2020, 2, 29),
         At(eTimeHour, 2020, 2, 29, 23, 59, 59)},  // leap day
        // A zone after a time without seconds is dropped by the strict scan.
        {"days since 2000-01-01 12:00 +05:30", At(eTimeDay, 2000, 1, 1, 12),
         At(eTimeDay, 2000, 1, 1, 12, 0, 0, 0, 19800)},
        {"days since 2000-01-01 12Z", At(eTimeDay, 2000, 1, 1, 12), At(eTimeDay, 2000, 1, 1, 12)},
        // Zones only the ISO reading knows.
        {"seconds since 1990-01-01 00:00:00Z", Refused(eBadTimeZoneOffset, L"Z"), At(eTimeSecond, 1990, 1, 1)},
        {"seconds since 2019-4-10 13:0:25Z", Refused(eBadTimeZoneOffset, L"Z"),
         At(eTimeSecond, 2019, 4, 10, 13, 0, 25)},
        {"seconds since 1990-01-01 00:00:00 Z", Refused(eBadTimeZoneOffset, L"Z"), At(eTimeSecond, 1990, 1, 1)},
        {"days since 2000-01-01 00:00:00 GMT", Refused(eBadTimeZoneOffset, L"GMT"), At(eTimeDay, 2000, 1, 1)},
        {"hours since 2000-01-01 06:30:00 +0530", Refused(eBadTimeZoneOffset, L"+0530"),
         At(eTimeHour, 2000, 1, 1, 6, 30, 0, 0, 19800)},
        {"hours since 2000-01-01 06:30:00-0330", Refused(eBadTimeZoneOffset, L"-0330"),
         At(eTimeHour, 2000, 1, 1, 6, 30, 0, 0, -12600)},
        {"hours since 2000-01-01 06:30:00 -0030", Refused(eBadTimeZoneOffset),
         At(eTimeHour, 2000, 1, 1, 6, 30, 0, 0, -1800)},
        {"hours since 2000-01-01 06:30:00+05", Refused(eBadTimeZoneOffset, L"+05"),
         At(eTimeHour, 2000, 1, 1, 6, 30, 0, 0, 18000)},
        {"hours since 2000-01-01 06:30:00 -7", Refused(eBadTimeZoneOffset),
         At(eTimeHour, 2000, 1, 1, 6, 30, 0, 0, -25200)},
        // What the strict scan ignores after its last field, the ISO reading must understand.
        {"days since 2000-01-01T", At(eTimeDay, 2000, 1, 1), Refused(eBadTimeUnits, L"days since 2000-01-01T")},
        {"days since 2000-01-01T12:00:00 EST", At(eTimeDay, 2000, 1, 1), Refused(eBadTimeZoneOffset, L"EST")},
        {"days since 2000-01-01 12:00:00 UTC extra", At(eTimeDay, 2000, 1, 1, 12),
         Refused(eBadTimeZoneOffset, L"UTC extra")},
        {"days since 2000-01-01 T12:00", At(eTimeDay, 2000, 1, 1), Refused(eBadTimeZoneOffset, L"T12:00")},
        {"days since 2000-01-01T24:00:00Z", At(eTimeDay, 2000, 1, 1), Refused(eBadTimeReference)},
    };
    for (const Row& row : rows) {
        ExpectReadings(row);
    }
}

TEST(TimeUnitsReadings, TextsTheStrictReadingReadsToTheEndAgree) {
    const Row rows[] = {
        {"days since 1970-01-01", At(eTimeDay, 1970, 1, 1), At(eTimeDay, 1970, 1, 1)},
        {"  hours   since 1999 - 12 - 31   23 : 59 : 59 ", At(eTimeHour, 1999, 12, 31, 23, 59, 59),
         At(eTimeHour, 1999, 12, 31, 23, 59, 59)},
        {"hours since1999-12-31 6:5", At(eTimeHour, 1999, 12, 31, 6, 5), At(eTimeHour, 1999, 12, 31, 6, 5)},
        {"seconds since 2019-4-10 13:0:25", At(eTimeSecond, 2019, 4, 10, 13, 0, 25),
         At(eTimeSecond, 2019, 4, 10, 13, 0, 25)},
        {"seconds since 1970-01-01 00:00:00.2505", At(eTimeSecond, 1970, 1, 1, 0, 0, 0, 250),
         At(eTimeSecond, 1970, 1, 1, 0, 0, 0, 250)},
        {"days since 2000-02-29", At(eTimeDay, 2000, 2, 29), At(eTimeDay, 2000, 2, 29)},
        {"seconds since 1970-01-01 00:00:00 utc", At(eTimeSecond, 1970, 1, 1), At(eTimeSecond, 1970, 1, 1)},
        {"hours since 2000-01-01 06:30:00 +05:30", At(eTimeHour, 2000, 1, 1, 6, 30, 0, 0, 19800),
         At(eTimeHour, 2000, 1, 1, 6, 30, 0, 0, 19800)},
        {"hours since 2000-01-01 06:30:00-05:30", At(eTimeHour, 2000, 1, 1, 6, 30, 0, 0, -19800),
         At(eTimeHour, 2000, 1, 1, 6, 30, 0, 0, -19800)},
        {"hours since 2000-01-01 06:30:00 -00:30", At(eTimeHour, 2000, 1, 1, 6, 30, 0, 0, -1800),
         At(eTimeHour, 2000, 1, 1, 6, 30, 0, 0, -1800)},
        {"hours since 2000-01-01 06:30:00 5:0", At(eTimeHour, 2000, 1, 1, 6, 30, 0, 0, 18000),
         At(eTimeHour, 2000, 1, 1, 6, 30, 0, 0, 18000)},
        // The strict scan reads a signed number after the date as the hour, and so must the ISO one.
        {"days since 2000-01-01 +05:00", At(eTimeDay, 2000, 1, 1, 5), At(eTimeDay, 2000, 1, 1, 5)},
    };
    for (const Row& row : rows) {
        ExpectReadings(row);
    }
}

TEST(TimeUnitsReadings, BothRefuse) {
    const Row rows[] = {
        {"Days Since 2000-01-01T00:00Z", Refused(eBadTimeUnits), Refused(eBadTimeUnits)},
        {"days since 2000-01", Refused(eBadTimeUnits), Refused(eBadTimeUnits)},
        {"days", Refused(eBadTimeUnits), Refused(eBadTimeUnits)},
        {"", Refused(eBadTimeUnits), Refused(eBadTimeUnits)},
        {"fortnights since 2000-01-01T00:00Z", Refused(eBadTimeUnits), Refused(eBadTimeUnits)},
        {"days since 2021-02-29T00:00:00Z", Refused(eBadTimeReference), Refused(eBadTimeReference)},
        {"days since 1900-02-29", Refused(eBadTimeReference), Refused(eBadTimeReference)},
        {"days since 0000-01-01T00:00:00Z", Refused(eBadTimeReference), Refused(eBadTimeReference)},
        {"days since 2000-01-01 -05:00", Refused(eBadTimeReference), Refused(eBadTimeReference)},
        {"days since 2000-01-01 00:00:00 +05:-30", Refused(eBadTimeZoneOffset, L"+05:-30"),
         Refused(eBadTimeZoneOffset, L"+05:-30")},
        {"days since 2000-01-01 00:00:00 +053", Refused(eBadTimeZoneOffset), Refused(eBadTimeZoneOffset, L"+053")},
        {"days since 2000-01-01 00:00:00 0530", Refused(eBadTimeZoneOffset), Refused(eBadTimeZoneOffset, L"0530")},
        {"days since 2000-01-01 00:00:00 EST", Refused(eBadTimeZoneOffset), Refused(eBadTimeZoneOffset, L"EST")},
    };
    for (const Row& row : rows) {
        ExpectReadings(row);
    }
}

}  // namespace
