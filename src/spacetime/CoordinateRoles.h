#pragma once
// What a classified coordinate variable measures, and the vertical datum its standard name implies.

namespace ZorvoDSG::SpaceTime {

enum eCoordinateRole : int {
    eCoordinateUnclassified = 1,
    eCoordinateX = 2,
    eCoordinateY = 3,
    eCoordinateZ = 4,
    eCoordinateT = 5,
};

enum eVerticalDatumModel : int {
    eVerticalDatumUnspecified = 1,
    eVerticalDatumEllipsoid = 2,
    eVerticalDatumGeoid = 3,
    eVerticalDatumLowestAstronomicalTide = 4,
    eVerticalDatumMeanHigherHighWater = 5,
    eVerticalDatumMeanLowerLowWater = 6,
    eVerticalDatumMeanLowWaterSprings = 7,
    eVerticalDatumMeanSeaLevel = 8,
};

}  // namespace ZorvoDSG::SpaceTime
