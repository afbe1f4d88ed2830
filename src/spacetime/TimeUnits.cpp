#include <zorvodsg/spacetime/TimeUnits.h>

#include <algorithm>
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

bool IsAsciiDigit(char c) { return c >= '0' && c <= '9'; }

bool IsScanSpace(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

bool AllDigits(std::string_view text) {
    for (const char c : text) {
        if (!IsAsciiDigit(c)) {
            return false;
        }
    }
    return true;
}

int DigitsValue(std::string_view digits) {
    int value = 0;
    for (const char c : digits) {
        value = value * 10 + (c - '0');
    }
    return value;
}

std::string_view TrimScanSpace(std::string_view text) {
    while (!text.empty() && IsScanSpace(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && IsScanSpace(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

// The ISO reading's zones: "Z", "UTC", "GMT", the strict reading's [-]h:mm (read by the strict rule so
// both readings agree on it), and a signed hhmm or h[h]. Like the strict reading it checks the form
// of an offset, not its range.
double IsoZoneOffsetSeconds(const std::string& zone) {
    const std::string lower = AsciiLower(zone);
    if (zone.empty() || lower == "z" || lower == "utc" || lower == "gmt") {
        return 0.0;
    }
    const std::string_view magnitude = (zone.front() == '+' || zone.front() == '-')
                                           ? std::string_view(zone).substr(1)
                                           : std::string_view(zone);
    const size_t colon = magnitude.find(':');
    if (colon != std::string_view::npos) {
        const std::string_view hours = magnitude.substr(0, colon);
        const std::string_view minutes = magnitude.substr(colon + 1);
        // At most four digits each keeps the strict rule's 16-bit fields from overflowing.
        if (!hours.empty() && hours.size() <= 4 && AllDigits(hours) && !minutes.empty() && minutes.size() <= 4 &&
            AllDigits(minutes)) {
            return ZoneOffsetSeconds(zone);
        }
    } else if (magnitude.size() != zone.size() && AllDigits(magnitude) &&
               (magnitude.size() == 1 || magnitude.size() == 2 || magnitude.size() == 4)) {
        const int hours = DigitsValue(magnitude.substr(0, std::min<size_t>(magnitude.size(), 2)));
        const int minutes = magnitude.size() == 4 ? DigitsValue(magnitude.substr(2)) : 0;
        const double offset = hours * 3600.0 + minutes * 60.0;
        return zone.front() == '-' ? -offset : offset;
    }
    throw Exception(eBadTimeZoneOffset, Utf8ToWide(zone), {});
}

// The fields of a units text, the zone already turned into an offset.
struct ScannedUnits {
    std::string word;
    unsigned short year = 0, month = 0, day = 0, hour = 0, minute = 0;
    double seconds = 0.0;
    double zoneOffset = 0.0;
};

// The ISO reading scans with the strict reading's directives, field by field, so that every text the
// strict pattern reads to its end is split into the same fields; it adds a "T" before the time of day
// and takes everything after the time of day as the zone. False when there is no complete date, or
// no time after a "T".
bool ScanIsoFields(const char* text, ScannedUnits& scanned, std::string& zone) {
    char word[1024] = {};
    int end = -1;
    if (std::sscanf(text, "%1023s since %hu - %hu - %hu%n", word, &scanned.year, &scanned.month, &scanned.day,
                    &end) < 4 ||
        end < 0) {
        return false;
    }
    scanned.word = word;
    const char* rest = text + end;
    if (*rest == 'T' || *rest == 't') {
        ++rest;
        if (!IsAsciiDigit(*rest)) {
            return false;
        }
    }
    end = -1;
    if (std::sscanf(rest, " %hu%n", &scanned.hour, &end) == 1 && end >= 0) {
        rest += end;
        end = -1;
        if (std::sscanf(rest, " : %hu%n", &scanned.minute, &end) == 1 && end >= 0) {
            rest += end;
            end = -1;
            if (std::sscanf(rest, " : %lf%n", &scanned.seconds, &end) == 1 && end >= 0) {
                rest += end;
            }
        }
    }
    zone = TrimScanSpace(rest);
    return true;
}

// Calendar check before the unit word, in both readings.
TimeReference MakeTimeReference(const std::string& units, const ScannedUnits& scanned) {
    SYSTEMTIME st{};
    st.wYear = scanned.year;
    st.wMonth = scanned.month;
    st.wDay = scanned.day;
    st.wHour = scanned.hour;
    st.wMinute = scanned.minute;
    const double whole = std::trunc(scanned.seconds);
    st.wSecond = ToCalendarField(whole);
    st.wMilliseconds = ToCalendarField((scanned.seconds - whole) * 1000.0);

    FILETIME baseTime{};
    if (!SystemTimeToFileTime(st, baseTime)) {
        throw Exception(eBadTimeReference, Utf8ToWide(units), {});
    }
    eTimeUnit unit = eTimeNone;
    if (!ParseUnitWord(scanned.word, unit)) {
        throw Exception(eBadTimeUnits, Utf8ToWide(units), {});
    }
    return TimeReference(unit, baseTime, scanned.zoneOffset);
}

}  // namespace

TimeReference ParseTimeUnits(const std::string& units) {
    char word[1024] = {};
    char zone[1024] = {};
    ScannedUnits scanned;
    int cFields = 0;
    {
        CNumericLocale cLocale;
        cFields = std::sscanf(units.c_str(), "%1023s since %hu - %hu - %hu %hu : %hu : %lf %1023s", word,
                              &scanned.year, &scanned.month, &scanned.day, &scanned.hour, &scanned.minute,
                              &scanned.seconds, zone);
    }
    if (cFields < 4) {
        throw Exception(eBadTimeUnits, Utf8ToWide(units), {});
    }
    scanned.word = word;
    scanned.zoneOffset = ZoneOffsetSeconds(zone);
    return MakeTimeReference(units, scanned);
}

TimeReference ParseIsoTimeUnits(const std::string& units) {
    ScannedUnits scanned;
    std::string zone;
    bool bScanned = false;
    {
        CNumericLocale cLocale;
        bScanned = ScanIsoFields(units.c_str(), scanned, zone);
    }
    if (!bScanned) {
        throw Exception(eBadTimeUnits, Utf8ToWide(units), {});
    }
    scanned.zoneOffset = IsoZoneOffsetSeconds(zone);
    return MakeTimeReference(units, scanned);
}

}  // namespace ZorvoDSG::SpaceTime
