#pragma once
// The geometry of a profile or time series: one horizontal position and a run of values along the
// profile's axis (z of each level, or the time of each observation), in one heap block so that a
// feature can be refilled without reallocating.
//
// Blocks are made with `new (capacity) WKSProfile()` and released with `delete`; a block made for
// `capacity` values has room for at least capacity + 1. Only the owner (ProfileFeature) knows the
// capacity, so it alone copies whole profiles.

#include <cstddef>
#include <cstdint>

#include <zorvodsg/cursor/WKSPointXYZT.h>
#include <zorvodsg/host/Wks.h>
#include <zorvodsg/json/ZorvoJSONWriter.h>

namespace ZorvoDSG::SpaceTime {

struct WKSProfile {
    int32_t count = 0;
    double x = kMissing;
    double y = kMissing;
    double values[1] = {kMissing};  // continues to the end of the block

    WKSProfile() = default;
    // Copies `count` values; the block must have room for them.
    WKSProfile(long count, double x, double y, const double* values);
    // Copies the header and the first `count` values into a block that has room for them.
    WKSProfile(const WKSProfile& other);
    // Header and the one built-in value slot only.
    WKSProfile& operator=(const WKSProfile& other);

    static void* operator new(std::size_t size, long capacity);
    static void operator delete(void* block, long capacity);
    static void operator delete(void* block);

    double* Values() { return values; }
    const double* Values() const { return values; }

    bool bEmpty() const { return count == 0; }
    void SetEmpty() { count = 0; }
    // x, y and the z range from the first to the last value, the pair put in order; an empty
    // envelope for a profile without values.
    Host::WKSEnvelopeZ Extent() const;
    // value = scale * value + offset for x, y and the values, as the flags say (the t pair is unused).
    void Unpack(const UnpackInfo& info);
    // x or y missing makes both NaN; values equal to missing.z become NaN and trailing ones are cut
    // from the count. Pass the missing time in z when the values are times.
    void ConvertMissingToNaN(const WKSPointXYZT& missing);
    // {"hasZ": true, "hasM": true, "paths": [[[x, y, v, v], ...]]}: one path of `count` vertices,
    // each value written as z and as m; a missing coordinate is null.
    void ToZorvoJSON(ZorvoJSONWriter& writer) const;
};

}  // namespace ZorvoDSG::SpaceTime
