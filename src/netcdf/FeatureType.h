#pragma once
// DSG feature types and their names.

#include <cstdint>
#include <string>

namespace ZorvoDSG {

enum eFeatureType : int {
    eFeatureUnknown = 0,
    eFeaturePoint = 1,
    eFeatureProfile = 2,
    eFeatureTimeSeries = 3,
    eFeatureTrajectory = 4,
    eFeatureTimeSeriesProfile = 5,
    eFeatureTrajectoryProfile = 6,
};

// Case-insensitive; also accepts the cf_role spellings "profile_id", "timeSeries_id", "trajectory_id".
eFeatureType ParseFeatureType(const std::string& text);
// "unknown" for values outside 1..6.
std::string FeatureTypeName(eFeatureType type);

// A CF conventions version; {0, 0} when none was found.
struct VersionNumber {
    uint16_t major = 0;
    uint16_t minor = 0;
};

}  // namespace ZorvoDSG
