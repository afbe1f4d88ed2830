#pragma once
// The observation arrays of profile and trajectory features: one typed array per observation
// variable, sized for a number of observations.

#include <vector>

#include <zorvodsg/featureclass/ObservationVariable.h>
#include <zorvodsg/values/NcVariantArray.h>

namespace ZorvoDSG::detail {

// An array of the variable's type, fill value and string width (at least 1), with room for `reserve`.
std::vector<System::NcVariantArray> MakeObservationArrays(const std::vector<ObservationVariable>& variables,
                                                          long reserve);
void ReserveObservationArrays(std::vector<System::NcVariantArray>& arrays, long reserve);
void EmptyObservationArrays(std::vector<System::NcVariantArray>& arrays);

}  // namespace ZorvoDSG::detail
