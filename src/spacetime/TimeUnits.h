#pragma once

#include <string>

#include <zorvodsg/spacetime/TimeReference.h>

namespace ZorvoDSG::SpaceTime {

// Parses CF time units: "<unit word> since <year>-<month>-<day> [<h>:<min>:<s> [<zone>]]", where the
// word "since" is lower case, white space may surround every separator, and the zone is "UTC" or
// "[-]hh:mm". Throws Exception eBadTimeUnits, eBadTimeZoneOffset or eBadTimeReference.
TimeReference ParseTimeUnits(const std::string& units);

// The same grammar with ISO 8601 reference times as well: a "T" between date and time of day
// ("2000-01-01T12:00:00"), and after the time a zone "Z", "UTC", "GMT", "[-]hh:mm", "+hhmm" or "+hh"
// (either sign), written with or without a space before it. Fields may be unpadded ("2019-4-10
// 13:0:25Z") and seconds fractional. Every text that ParseTimeUnits reads to its end with no zone or
// a "UTC" or "[-]hh:mm" zone gives the same TimeReference here; but where ParseTimeUnits stops early
// and drops the rest (a time of day after "T", a zone after a time without seconds), this reading uses
// it or refuses it: whatever follows the time of day must be one zone. Same exceptions.
TimeReference ParseIsoTimeUnits(const std::string& units);

}  // namespace ZorvoDSG::SpaceTime
