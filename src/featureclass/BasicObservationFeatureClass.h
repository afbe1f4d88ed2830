#pragma once
// The common base of the profile (and time-series) and trajectory classes: features that carry a
// run of observations each. It holds the observation list and the discovery procedures both kinds
// share: ragged discovery for contiguous ragged arrays (row-count variables with
// `sample_dimension`), orthogonal discovery for multidimensional arrays (every variable with
// `coordinates`), and the step that turns ancillary variables into observation variables.
//
// Failures: Exception eRowCountDimension, eBadSampleDimension, eAttributeNotPresent, eSRConflict,
// eObservationCoordinateMismatch, eNoObservationVariables, eInstanceDimensionMismatch (indexed
// ragged arrays, which are not read), eVariableNotFound (by name).

#include <memory>
#include <string>
#include <vector>

#include <zorvodsg/featureclass/BasicFeatureClass.h>
#include <zorvodsg/featureclass/IFeatureClassObservations.h>
#include <zorvodsg/featureclass/ObservationVariable.h>

namespace ZorvoDSG {

class BasicObservationFeatureClass : public BasicFeatureClass, public IFeatureClassObservations {
public:
    ZorvoDSG::ObservationVariable ObservationVariable(const std::string& name) override;
    const std::vector<ZorvoDSG::ObservationVariable>& ObservationVariables() const override {
        return m_observationVariables;
    }

protected:
    BasicObservationFeatureClass(const std::shared_ptr<ICFMetadata>& dataset, long idInstanceVar,
                                 const std::shared_ptr<IWorkspace>& workspace);
    BasicObservationFeatureClass(const BasicObservationFeatureClass&) = default;
    BasicObservationFeatureClass& operator=(const BasicObservationFeatureClass&) = default;
    ~BasicObservationFeatureClass() = default;

    // Appends, once per naming variable, the ancillary variables of `list` that are not yet in it.
    void AddAVarsToOVars(System::ILog& log) { AddAVarsToOVars(m_observationVariables, log); }
    void AddAVarsToOVars(std::vector<ZorvoDSG::ObservationVariable>& list, System::ILog& log);

    // The instance dimension of a ragged dataset from the cf_role variable.
    void SetRaggedInstanceDimension();
    // Row-count variables along the instance dimension, in discovery order, and the observation
    // variables along their sample dimensions appended to `list`.
    std::vector<long> RaggedDiscovery(std::vector<ZorvoDSG::ObservationVariable>& list, System::ILog& log);
    // Every observation variable names the first one's grid mapping and coordinates (and, with
    // `bCompareVerticalCRS`, its vertical_crs_definition).
    void CheckRaggedConsistency(const std::vector<ZorvoDSG::ObservationVariable>& list, bool bCompareVerticalCRS);
    // Every variable with `coordinates`, appended to `list`; their ids.
    std::vector<long> OrthogonalDiscovery(std::vector<ZorvoDSG::ObservationVariable>& list, System::ILog& log);
    // Layout and instance dimension from the cf_role variable of an orthogonal dataset.
    void SetOrthogonalLayout();
    // The instance variables of a ragged dataset: along the instance dimension, without row counts,
    // coordinates and the cf_role variable, in ascending id order.
    void AddRaggedInstanceVariables();
    // The instance variables of an orthogonal dataset, in ascending id order, skipping `skip`.
    void AddOrthogonalInstanceVariables(long idGridMapping, const std::vector<long>& skip);
    // The sample dimension named by a row-count variable's `sample_dimension`.
    long SampleDimensionOf(long idRowCountVar);
    // The first row-count variable whose sample dimension is `dimId`; -1 when none is.
    long RowCountVarFor(const std::vector<long>& rowCountVars, long dimId);
    // The grid-mapping variable's id for a `grid_mapping` value (-1 when it is not text).
    long GridMappingVar(const System::NcVariant& gridMapping);

    std::vector<ZorvoDSG::ObservationVariable> m_observationVariables;
};

}  // namespace ZorvoDSG
