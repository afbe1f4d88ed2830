#pragma once
// A CF trajectory dataset as a feature class: every feature is a path, a run of observations along
// which X, Y, (Z) and T all vary. Read from contiguous ragged arrays (a row-size variable with
// `sample_dimension` counts each trajectory's run of the observation dimension), from
// multidimensional arrays X(trajectory, obs) (orthogonal or incomplete, shorter trajectories padded
// with fill values; also stored as X(obs, trajectory)), or from a single trajectory X(obs) with a
// scalar or single-string cf_role variable.
//
// The class keeps its observation variables in a list of its own, ancillary variables joined to it.
// Observation variables must run along X's dimensions; those that do not are left out of the schema
// and reported to the log (message 21).
//
// Failures: Exception eInstanceDimension, eInstanceDimensionMismatch (X without an observation
// dimension next to the instance dimension, Y, Z or T not shaped like X, indexed ragged arrays),
// eCoordNotFound, eMissingTrajectoryRowCountVar, eNoObservationVariables, eSRConflict (grid mappings
// or vertical_crs_definition differ), the codes of ragged discovery, of coordinate assignment and of
// the spatial reference (among them eMissingCoordinates "T": a trajectory needs time).

#include <memory>
#include <string>
#include <vector>

#include <zorvodsg/cursor/SpatialFilter.h>
#include <zorvodsg/featureclass/BasicObservationFeatureClass.h>

namespace ZorvoDSG {

class BasicTrajectoryFeatureClass : public BasicObservationFeatureClass,
                                    public std::enable_shared_from_this<BasicTrajectoryFeatureClass> {
public:
    BasicTrajectoryFeatureClass(eFeatureType type, const std::shared_ptr<ICFMetadata>& dataset, long idCfRoleVar,
                                const std::shared_ptr<IWorkspace>& workspace);

    eFeatureType FeatureType() override { return m_featureType; }
    uint64_t cFeatures() const override;
    std::shared_ptr<IFeatureCursor> Search(const SpatialFilter& filter) override;
    SpatialFilter DefinitionQuery() override { return m_definitionQuery; }
    // The ZorvoJSON of the class's own members: an empty object, as for every class of this build.
    void ToZorvoJSON(ZorvoJSONWriter& writer) override;

    const std::vector<ZorvoDSG::ObservationVariable>& ObservationVariables() const override {
        return m_trajectoryObservations;
    }

    // Ragged layout: the row-count variable of the observation dimension; -1 otherwise.
    long idRowSizeVar() const { return m_idRowSizeVar; }
    // The dimension along which X, and with it every observation, runs.
    long idObservationDim() const { return m_idObservationDim; }

protected:
    void BuildCRASchema();
    void BuildOrthoMDSchema();

private:
    // The dimensions an observation of this class runs along: X's.
    std::vector<long> RunDims() const;
    // Y, T and Z must have X's dimensions.
    void CheckCoordinateShapes();
    // Drops (and logs) the observation variables that do not run along `runDims`, or in the ragged
    // layout along their own sample dimension.
    void DropMisshapenObservations(System::ILog& log);

    SpatialFilter m_definitionQuery;
    eFeatureType m_featureType;
    long m_idRowSizeVar = -1;
    long m_idObservationDim = -1;
    std::vector<ZorvoDSG::ObservationVariable> m_trajectoryObservations;
};

}  // namespace ZorvoDSG
