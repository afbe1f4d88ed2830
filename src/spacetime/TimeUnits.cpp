#include <zorvodsg/spacetime/TimeUnits.h>

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <string_view>

#include <zorvodsg/host/SystemTime.h>
#include <zorvodsg/host/Utf8.h>
#include <zorvodsg/spacetime/detail/CNumericLocale.h>
#include <zorvodsg/values/Ascii.h>
#include <zorvodsg/values/Exception.h>

using ZorvoDSG::Host::FILETIME;
using ZorvoDSG::Host::SYSTEMTIME;
using ZorvoDSG::Host::SystemTimeToFileTime;
using ZorvoDSG::Host::Utf8ToWide;

namespace ZorvoDSG::SpaceTime {

namespace {

using detail::CNumericLocale;
using System::AsciiLower;

// Out-of-range values become 0xFFFF, which no calendar field accepts.
uint16_t ToCalendarField(double value) {
    return (value >= 0.0 && value < 65536.0) ? static_cast<uint16_t>(value) : uint16_t{0xFFFF};
}

double ZoneOffsetSeconds(const std::string& zone) {
    if (zone.empty() || AsciiLower(zone) == "utc") {
        return 0.0;
    }
    short hours = 0;
    short minutes = 0;
    int cFields = 0;
    {
        CNumericLocale cLocale;
        cFields = std::sscanf(zone.c_str(), "%hd : %hd", &hours, &minutes);
    }
    if (cFields != 2 || minutes < 0) {
        throw Exception(eBadTimeZoneOffset, Utf8ToWide(zone), {});
    }
    if (zone.front() == '-') {  // "-00:30" has no sign on its hours
        minutes = static_cast<short>(-minutes);
    }
    return hours * 3600.0 + minutes * 60.0;
}

bool ParseUnitWord(const std::string& word, eTimeUnit& unit) {
    const std::string w = AsciiLower(word);
    if (w.starts_with("year")) {
        unit = eTimeYear;
    } else if (w.starts_with("month")) {
        unit = eTimeMonth;
    } else if (w.starts_with("day") || w == "d") {
        unit = eTimeDay;
    } else if (w.starts_with("hour") || w == "hr" || w == "h") {
        unit = eTimeHour;
    } else if (w.starts_with("minute") || w == "min") {
        unit = eTimeMinute;
    } else if (w.starts_with("second") || w == "sec" || w == "s") {
        unit = eTimeSecond;
    } else {
        return false;
    }
    return true;
}

}  // namespace

TimeReference ParseTimeUnits(const std::string& units) {
    char word[1024] = {};
    char zone[1024] = {};
    unsigned short year = 0, month = 0, day = 0, hour = 0, minute = 0;
    double seconds = 0.0;
    int cFields = 0;
    {
        CNumericLocale cLocale;
        cFields = std::sscanf(units.c_str(), "%1023s since %hu - %hu - %hu %hu : %hu : %lf %1023s", word, &year,
                              &month, &day, &hour, &minute, &seconds, zone);
    }
    if (cFields < 4) {
        throw Exception(eBadTimeUnits, Utf8ToWide(units), {});
    }

    SYSTEMTIME st{};
    st.wYear = year;
    st.wMonth = month;
    st.wDay = day;
    st.wHour = hour;
    st.wMinute = minute;
    const double whole = std::trunc(seconds);
    st.wSecond = ToCalendarField(whole);
    st.wMilliseconds = ToCalendarField((seconds - whole) * 1000.0);

    const double zoneOffset = ZoneOffsetSeconds(zone);

    FILETIME baseTime{};
    if (!SystemTimeToFileTime(st, baseTime)) {
        throw Exception(eBadTimeReference, Utf8ToWide(units), {});
    }
    eTimeUnit unit = eTimeNone;
    if (!ParseUnitWord(word, unit)) {
        throw Exception(eBadTimeUnits, Utf8ToWide(units), {});
    }
    return TimeReference(unit, baseTime, zoneOffset);
}

}  // namespace ZorvoDSG::SpaceTime
