#pragma once
// A variable whose values form a run per feature along a sample dimension (temperature along depth,
// position along time), with the ragged-array variable that counts its elements per feature and the
// ancillary variables (quality flags and the like) its `ancillary_variables` attribute names.

#include <vector>

#include <zorvodsg/netcdf/Variable.h>
#include <zorvodsg/values/ILog.h>

namespace ZorvoDSG {

class ObservationVariable : public Variable {
public:
    // Not ragged: no row-count variable, no sample dimension.
    ObservationVariable(const Variable& variable, System::ILog& log);
    ObservationVariable(const Variable& variable, long idRowCountVar, long idSampleDim, System::ILog& log);

    long idRowCountVar() const { return m_idRowCountVar; }
    long idSampleDim() const { return m_idSampleDim; }
    const std::vector<Variable>& AncillaryVariables() const { return m_ancillaryVariables; }

private:
    // Names the dataset lacks are logged (message 6); variables along another dimension than the
    // sample dimension are dropped silently.
    void ConstructAncillaryVariables(System::ILog& log);

    long m_idRowCountVar = -1;
    long m_idSampleDim = -1;
    std::vector<Variable> m_ancillaryVariables;
};

}  // namespace ZorvoDSG
