#pragma once
// The CF grid-mapping names that make a projected CRS, each with the gk projection it stands for and
// the grid-mapping attributes that set that projection's parameters. Built once, read only.

#include <array>
#include <string_view>

namespace ZorvoDSG::SpaceTime {

// One grid-mapping attribute applied to the projection parameter array. `secondSlot` >= 0 marks
// `standard_parallel` given as one or two values (see SpaceTimeReference::CheckSetParallels).
struct GridMappingParameter {
    const char* attribute = nullptr;  // null ends the list
    int slot = -1;
    int secondSlot = -1;
    bool bBoth = false;
};

struct GridMappingProjection {
    std::string_view name;
    long projectionCode = 0;               // 0: supported name without a projection
    long projectionCodeWithParallel = 0;   // used instead when `standard_parallel` is present
    std::array<GridMappingParameter, 4> parameters;
};

// The entry for a grid_mapping_name (compared exactly), or null when it is not a supported name.
const GridMappingProjection* FindGridMapping(std::string_view gridMappingName);

}  // namespace ZorvoDSG::SpaceTime
