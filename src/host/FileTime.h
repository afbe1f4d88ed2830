#pragma once
// The Windows FILETIME: 100-nanosecond ticks since 1601-01-01 UTC, split into two 32-bit halves.

#include <cstdint>

namespace ZorvoDSG::Host {

struct FILETIME {
    uint32_t dwLowDateTime = 0;
    uint32_t dwHighDateTime = 0;
};

inline uint64_t FileTimeToUInt64(const FILETIME& ft) {
    return (static_cast<uint64_t>(ft.dwHighDateTime) << 32) | ft.dwLowDateTime;
}

inline FILETIME UInt64ToFileTime(uint64_t ticks) {
    return FILETIME{static_cast<uint32_t>(ticks & 0xFFFFFFFFu), static_cast<uint32_t>(ticks >> 32)};
}

inline bool operator==(const FILETIME& a, const FILETIME& b) {
    return a.dwLowDateTime == b.dwLowDateTime && a.dwHighDateTime == b.dwHighDateTime;
}

}  // namespace ZorvoDSG::Host
