#include <zorvodsg/spacetime/TimeReference.h>

#include <cmath>
#include <limits>
#include <stdexcept>

using ZorvoDSG::Host::FILETIME;
using ZorvoDSG::Host::FileTimeToUInt64;
using ZorvoDSG::Host::UInt64ToFileTime;

namespace ZorvoDSG::SpaceTime {

namespace {

constexpr double kDaysPerYear = 365.242198781;
constexpr uint64_t kTicksPerSecond = 10'000'000;

// Truncation toward zero as the x86 conversion instruction does it: NaN and values beyond the 64-bit
// range give 0x8000000000000000 instead of undefined behaviour.
int64_t Truncate(double value) {
    constexpr double kLimit = 9223372036854775808.0;  // 2^63
    if (!(value > -kLimit && value < kLimit)) {
        return std::numeric_limits<int64_t>::min();
    }
    return static_cast<int64_t>(value);
}

}  // namespace

TimeReference::TimeReference(eTimeUnit unit_, FILETIME baseTime_, double zoneOffsetSeconds_)
    : unit(unit_), baseTime(baseTime_), zoneOffsetSeconds(zoneOffsetSeconds_) {}

uint64_t TimeReference::ToSeconds(double value) const {
    // Multiplied factor by factor, left to right: folding 24 * 60 * 60 into one constant rounds
    // differently and moves some values (0.38730324074074074 days) to the next whole second.
    double seconds = 0.0;
    switch (unit) {
    case eTimeYear: seconds = value * kDaysPerYear * 24.0 * 60.0 * 60.0; break;
    case eTimeMonth: seconds = value * kDaysPerYear / 12.0 * 24.0 * 60.0 * 60.0; break;
    case eTimeDay: seconds = value * 24.0 * 60.0 * 60.0; break;
    case eTimeHour: seconds = value * 60.0 * 60.0; break;
    case eTimeMinute: seconds = value * 60.0; break;
    case eTimeSecond: seconds = value; break;
    case eTimeCommonYear: throw std::runtime_error("common year not impl");
    case eTimeLeapYear: throw std::runtime_error("leap year not impl");
    case eTimeJulianYear: throw std::runtime_error("julian year not impl");
    case eTimeGregorianYear: throw std::runtime_error("gregorian year not impl");
    default: throw std::runtime_error("invalid time unit");
    }
    return static_cast<uint64_t>(Truncate(seconds));
}

FILETIME TimeReference::ToFileTime(double value) const {
    // Unsigned arithmetic wraps, so offsets before the reference come out right.
    const uint64_t seconds = ToSeconds(value) - static_cast<uint64_t>(Truncate(zoneOffsetSeconds));
    return UInt64ToFileTime(FileTimeToUInt64(baseTime) + seconds * kTicksPerSecond);
}

}  // namespace ZorvoDSG::SpaceTime
