#pragma once

#include <zorvodsg/spacetime/CoordinateRoles.h>
#include <zorvodsg/spacetime/TimeReference.h>

namespace ZorvoDSG {

// A classified coordinate variable, as stored in ICFMetadata::Name2CoordVar.
struct CoordinateVariableId {
    SpaceTime::TimeReference timeReference;  // T only; all zero otherwise
    long id = -1;
    SpaceTime::eCoordinateRole role = SpaceTime::eCoordinateUnclassified;
    SpaceTime::eVerticalDatumModel verticalDatumModel = SpaceTime::eVerticalDatumUnspecified;
    bool bZUp = true;
};

}  // namespace ZorvoDSG
