#pragma once
// One feature as the output writers see it: coordinates already in the output CRS, the time already
// as text, and the values lined up with the run's columns.

#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <zorvodsg/values/NcVariant.h>

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

// A profile or time series: one position, and a run of observations along z (profiles) or time
// (time series). The record's `time` is the instance's one time (profiles), its `values` the
// instance values; each row carries the observation's time, z and the observation values.
struct ProfileRecord : FeatureRecord {
    double x = 0.0;  // NaN: no position
    double y = 0.0;
    double z = 0.0;  // a time series' station z; NaN otherwise
    bool bFloatXY = false;
    bool bValuesAreZ = true;  // profiles: rows differ in z; time series: in time
    struct Row {
        std::string_view time;
        double z = 0.0;
        // One entry per column: the instance values, and where this class has an observation
        // variable, its value for the row.
        std::span<const ZorvoDSG::System::NcVariant* const> values;
    };
    size_t cRows = 0;
    std::vector<Row> rows;
    // Columns of the observation variables, and their runs (element j is row j).
    std::vector<std::pair<size_t, const ZorvoDSG::System::NcVariantArray*>> observations;
};

// A trajectory: its vertices, each with its position, z, time and observation values. The record's
// `time` is unused; its `values` are the instance values.
struct TrajectoryRecord : FeatureRecord {
    struct Vertex {
        double x = 0.0;  // NaN: no position
        double y = 0.0;
        double z = 0.0;  // NaN: no z
        std::string_view time;
        std::span<const ZorvoDSG::System::NcVariant* const> values;
    };
    bool bFloatXY = false;
    std::vector<Vertex> vertices;
    std::string_view timeStart;  // the earliest and latest vertex time; empty without times
    std::string_view timeEnd;
    std::vector<std::pair<size_t, const ZorvoDSG::System::NcVariantArray*>> observations;
};

}  // namespace zdsg
