#pragma once

#include <cstdint>

namespace ZorvoDSG::SpaceTime {

// Unit of the values of a time coordinate. The common, leap, julian and gregorian years are never
// produced by the time-units parser; converting with them is not implemented.
enum eTimeUnit : int32_t {
    eTimeNone = 0,
    eTimeYear = 1,
    eTimeCommonYear = 2,
    eTimeLeapYear = 3,
    eTimeJulianYear = 4,
    eTimeGregorianYear = 5,
    eTimeMonth = 6,
    eTimeDay = 7,
    eTimeHour = 8,
    eTimeMinute = 9,
    eTimeSecond = 10,
};

}  // namespace ZorvoDSG::SpaceTime
