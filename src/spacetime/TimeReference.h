#pragma once

#include <cstdint>

#include <zorvodsg/host/FileTime.h>
#include <zorvodsg/spacetime/eTimeUnit.h>

namespace ZorvoDSG::SpaceTime {

// A CF time reference: the unit of the coordinate values, the reference instant as written (taken as
// UTC) and the zone offset written after it. Turns coordinate values into absolute FILETIMEs.
class TimeReference {
public:
    TimeReference() = default;
    TimeReference(eTimeUnit unit, Host::FILETIME baseTime, double zoneOffsetSeconds);

    eTimeUnit timeUnit() const { return unit; }
    const Host::FILETIME& BaseTime() const { return baseTime; }
    double ZoneOffsetSeconds() const { return zoneOffsetSeconds; }

    // The UTC instant of a coordinate value, to the whole second.
    Host::FILETIME ToFileTime(double value) const;

private:
    // Whole seconds from the reference (two's complement for values before it).
    uint64_t ToSeconds(double value) const;

    eTimeUnit unit = eTimeNone;
    Host::FILETIME baseTime{};
    double zoneOffsetSeconds = 0.0;
};

}  // namespace ZorvoDSG::SpaceTime
