#pragma once
// One feature as the output writers see it: coordinates already in the output CRS, the time already
// as text, and the values lined up with the run's columns.

#include <span>
#include <string>
#include <string_view>

#include "values/NcVariant.h"

namespace zdsg {

// What every feature of one class shares in the output.
struct ClassOutput {
    std::string name;
    bool bHasZ = false;
    // With --native-crs: the class's CRS as an identifier ("EPSG:32633"), else its WKT. Empty when
    // the coordinates are longitude/latitude on WGS 84.
    std::string nativeCrs;
};

struct FeatureRecord {
    const ClassOutput* featureClass = nullptr;
    const ZorvoDSG::System::NcVariant* oid = nullptr;
    std::string_view time;  // ISO 8601 UTC; empty when the feature has no time
    // One entry per column of the run; null where this class has no such variable. An empty
    // NcVariant is a fill value.
    std::span<const ZorvoDSG::System::NcVariant* const> values;
};

struct PointRecord : FeatureRecord {
    double x = 0.0;  // NaN: no position
    double y = 0.0;
    double z = 0.0;  // NaN: no z (or the class has none)
    // Coordinates that the file holds as floats and that reach the output unchanged are written with
    // float precision (48.1, not 48.099998474121094). PROJ may leave a position as it is (between two
    // datums of the same ellipsoid), so this is decided point by point.
    bool bFloatXY = false;
    bool bFloatZ = false;
};

}  // namespace zdsg
