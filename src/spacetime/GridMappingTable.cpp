#include <zorvodsg/spacetime/GridMappingTable.h>

#include <algorithm>

namespace ZorvoDSG::SpaceTime {

namespace {

// Parameter-array slots of gk's projections.
constexpr int kCentralMeridian = 2;
constexpr int kStandardParallel1 = 3;
constexpr int kStandardParallel2 = 4;
constexpr int kScaleFactor = 5;
constexpr int kLatitudeOfOrigin = 6;
constexpr int kAzimuth = 7;
constexpr int kLongitudeOfCenter = 10;
constexpr int kLatitudeOfCenter = 11;

constexpr GridMappingParameter Slot(const char* attribute, int slot) { return {attribute, slot, -1, false}; }
constexpr GridMappingParameter Parallels(bool bBoth) {
    return {"standard_parallel", kStandardParallel1, kStandardParallel2, bBoth};
}

constexpr std::array<GridMappingProjection, 13> kGridMappings{{
    {"albers_conical_equal_area", 43007, 43007,
     {Parallels(true), Slot("longitude_of_central_meridian", kCentralMeridian),
      Slot("latitude_of_projection_origin", kLatitudeOfOrigin)}},
    {"azimuthal_equidistant", 43032, 43032,
     {Slot("longitude_of_projection_origin", kCentralMeridian),
      Slot("latitude_of_projection_origin", kLatitudeOfOrigin)}},
    {"lambert_azimuthal_equal_area", 43033, 43033,
     {Slot("longitude_of_projection_origin", kCentralMeridian),
      Slot("latitude_of_projection_origin", kLatitudeOfOrigin)}},
    {"lambert_conformal_conic", 43020, 43020,
     {Parallels(false), Slot("longitude_of_central_meridian", kCentralMeridian),
      Slot("latitude_of_projection_origin", kLatitudeOfOrigin)}},
    {"lambert_cylindrical_equal_area", 43034, 43034,
     {Slot("longitude_of_central_meridian", kCentralMeridian), Slot("standard_parallel", kStandardParallel1)}},
    {"mercator", 43069, 43004,
     {Slot("longitude_of_projection_origin", kCentralMeridian), Slot("standard_parallel", kStandardParallel1),
      Slot("scale_factor_at_projection_origin", kScaleFactor)}},
    {"oblique_mercator", 43037, 43037,
     {Slot("longitude_of_projection_origin", kLongitudeOfCenter),
      Slot("latitude_of_projection_origin", kLatitudeOfCenter), Slot("azimuth_of_central_line", kAzimuth),
      Slot("scale_factor_at_projection_origin", kScaleFactor)}},
    {"orthographic", 43058, 43058,
     {Slot("longitude_of_projection_origin", kLongitudeOfCenter),
      Slot("latitude_of_projection_origin", kLatitudeOfCenter)}},
    {"polar_stereographic", 43066, 43067,
     {Slot("straight_vertical_longitude_from_pole", kCentralMeridian),
      Slot("latitude_of_projection_origin", kLatitudeOfOrigin), Slot("standard_parallel", kStandardParallel1),
      Slot("scale_factor_at_projection_origin", kScaleFactor)}},
    {"sinusoidal", 43008, 43008, {Slot("longitude_of_projection_origin", kCentralMeridian)}},
    {"stereographic", 43026, 43026,
     {Slot("longitude_of_projection_origin", kCentralMeridian),
      Slot("latitude_of_projection_origin", kLatitudeOfOrigin),
      Slot("scale_factor_at_projection_origin", kScaleFactor)}},
    {"transverse_mercator", 43006, 43006,
     {Slot("longitude_of_central_meridian", kCentralMeridian),
      Slot("latitude_of_projection_origin", kLatitudeOfOrigin),
      Slot("scale_factor_at_central_meridian", kScaleFactor)}},
    // Recognised as projected, but gk offers no projection for it.
    {"vertical_perspective", 0, 0, {}},
}};

}  // namespace

const GridMappingProjection* FindGridMapping(std::string_view gridMappingName) {
    const auto it = std::find_if(kGridMappings.begin(), kGridMappings.end(),
                                 [&](const GridMappingProjection& row) { return row.name == gridMappingName; });
    return it == kGridMappings.end() ? nullptr : &*it;
}

}  // namespace ZorvoDSG::SpaceTime
