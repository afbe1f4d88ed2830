#pragma once
// The observation variables of profile, time-series and trajectory classes.

#include <string>
#include <vector>

#include <zorvodsg/featureclass/ObservationVariable.h>

namespace ZorvoDSG {

class IFeatureClassObservations {
public:
    // The observation variable of this group-qualified name; Exception eVariableNotFound otherwise.
    virtual ZorvoDSG::ObservationVariable ObservationVariable(const std::string& name) = 0;
    virtual const std::vector<ZorvoDSG::ObservationVariable>& ObservationVariables() const = 0;

protected:
    IFeatureClassObservations() = default;
    IFeatureClassObservations(const IFeatureClassObservations&) = default;
    IFeatureClassObservations& operator=(const IFeatureClassObservations&) = default;
    ~IFeatureClassObservations() = default;
};

}  // namespace ZorvoDSG
