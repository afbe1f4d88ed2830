#pragma once
// The geometry of a trajectory: its 3-D extent and a run of vertices with x, y, z and t, in one heap
// block so that a feature can be refilled without reallocating.
//
// Blocks are made with `new (capacity) WKSTrajectory()` and released with `delete`; a block made for
// `capacity` points has room for at least capacity + 1. Only the owner (TrajectoryFeature) knows the
// capacity, so it alone copies whole trajectories.

#include <cstddef>
#include <cstdint>

#include <zorvodsg/cursor/WKSPointXYZT.h>
#include <zorvodsg/host/Wks.h>
#include <zorvodsg/json/ZorvoJSONWriter.h>

namespace ZorvoDSG::SpaceTime {

struct WKSTrajectory {
    Host::WKSEnvelopeZ envelope;
    int32_t count = 0;
    WKSPointXYZT points[1];  // continues to the end of the block

    WKSTrajectory() = default;
    // Copies the envelope and the first `count` points into a block that has room for them.
    WKSTrajectory(const WKSTrajectory& other);
    // Header and the one built-in point slot only.
    WKSTrajectory& operator=(const WKSTrajectory& other);

    static void* operator new(std::size_t size, long capacity);
    static void operator delete(void* block, long capacity);
    static void operator delete(void* block);

    WKSPointXYZT* Points() { return points; }
    const WKSPointXYZT* Points() const { return points; }

    bool bEmpty() const { return count == 0; }
    void SetEmpty();
    Host::WKSEnvelopeZ Extent() const { return envelope; }
    // The first and the latest time of the vertices; NaN when there are none or the first is NaN.
    WKSEnvelopeT TimeExtent() const;
    // Fills `count` vertices from parallel arrays (z may be null), turns coordinates equal to their
    // missing value into NaN, cuts trailing invalid vertices and computes the envelope. With z a
    // vertex is valid when all four coordinates are present; without z, when any of x, y, t is.
    void Set(long count, const double* x, const double* y, const double* z, const double* t,
             const WKSPointXYZT& missing);
    // value = scale * value + offset for the flagged coordinates of the vertices and the envelope.
    void Unpack(const UnpackInfo& info);
    // {"hasZ": true, "hasM": true, "paths": [[[x, y, z, t], ...]]}: one path of `count` vertices with
    // the time as m; a missing coordinate (z of a trajectory without z) is null. Without vertices,
    // "paths" is empty.
    void ToZorvoJSON(ZorvoJSONWriter& writer) const;

private:
    void Set3D(const double* x, const double* y, const double* z, const double* t, const WKSPointXYZT& missing,
               bool bTest);
    void Set2D(const double* x, const double* y, const double* t, const WKSPointXYZT& missing, bool bTest);
};

}  // namespace ZorvoDSG::SpaceTime
