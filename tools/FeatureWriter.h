#pragma once
// One output format of `zdsg features`. The run announces its columns, then hands over every feature
// through the hook of its kind, then ends; a writer streams as it goes and keeps no features.
// Failures to write surface as OutputError from the OutputFile underneath.

#include <string>
#include <vector>

#include "FeatureRecord.h"

namespace zdsg {

class FeatureWriter {
public:
    virtual ~FeatureWriter() = default;

    // The output names of the selected variables, in order; the same for every feature.
    virtual void Begin(const std::vector<std::string>& columns) = 0;
    virtual void Point(const PointRecord& point) = 0;
    // CSV: one row per observation; GeoJSON: one Point feature with the observations as arrays.
    virtual void Profile(const ProfileRecord& profile) = 0;
    // CSV: one row per vertex; GeoJSON: one LineString feature (null for a trajectory without
    // vertices) with the observations as arrays.
    virtual void Trajectory(const TrajectoryRecord& trajectory) = 0;
    virtual void End() = 0;
};

}  // namespace zdsg
