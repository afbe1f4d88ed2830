#pragma once

#include <string>

#include <zorvodsg/spacetime/TimeReference.h>

namespace ZorvoDSG::SpaceTime {

// Parses CF time units: "<unit word> since <year>-<month>-<day> [<h>:<min>:<s> [<zone>]]", where the
// word "since" is lower case, white space may surround every separator, and the zone is "UTC" or
// "[-]hh:mm". Throws Exception eBadTimeUnits, eBadTimeZoneOffset or eBadTimeReference.
TimeReference ParseTimeUnits(const std::string& units);

}  // namespace ZorvoDSG::SpaceTime
