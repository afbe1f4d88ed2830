#pragma once
// The Windows calendar date-time and its conversion to FILETIME.

#include <cstdint>

#include <zorvodsg/host/FileTime.h>

namespace ZorvoDSG::Host {

struct SYSTEMTIME {
    uint16_t wYear;
    uint16_t wMonth;
    uint16_t wDayOfWeek;
    uint16_t wDay;
    uint16_t wHour;
    uint16_t wMinute;
    uint16_t wSecond;
    uint16_t wMilliseconds;
};

// Proleptic Gregorian calendar, years 1601 to 30827, as UTC. Every field except wDayOfWeek (which is
// ignored) must lie in its range, the day within its month; otherwise returns false and leaves `ft`
// unchanged.
bool SystemTimeToFileTime(const SYSTEMTIME& st, FILETIME& ft);

}  // namespace ZorvoDSG::Host
