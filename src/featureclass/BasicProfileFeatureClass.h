#pragma once
// Profiles (a run of observations along the vertical at one place and time) and time series (a run
// along time at one place) as one feature class. Datasets with a `sample_dimension` attribute are
// read as contiguous ragged arrays, others as orthogonal multidimensional arrays or, when the
// cf_role variable is a scalar or a single string, as one feature.
//
// Failures: those of the observation discovery, eInstanceDimension, eMissingZorTRowCountVar,
// eNotDSGConformant and eInstanceDimensionMismatch (observation variables of unequal or wrong rank),
// and those of coordinate assignment and the spatial reference.

#include <memory>

#include <zorvodsg/featureclass/BasicObservationFeatureClass.h>

namespace ZorvoDSG {

class BasicProfileFeatureClass : public BasicObservationFeatureClass,
                                 public std::enable_shared_from_this<BasicProfileFeatureClass> {
public:
    BasicProfileFeatureClass(eFeatureType type, const std::shared_ptr<ICFMetadata>& dataset, long idCfRoleVar,
                             const std::shared_ptr<IWorkspace>& workspace);

    eFeatureType FeatureType() override { return m_featureType; }
    uint64_t cFeatures() const override;
    std::shared_ptr<IFeatureCursor> Search(const SpatialFilter& filter) override;
    SpatialFilter DefinitionQuery() override { return m_definitionQuery; }
    // The ZorvoJSON feature set of every profile, with every instance variable (ZorvoJSONFeatureSet).
    void ToZorvoJSON(ZorvoJSONWriter& writer) override;

    // Ragged layout: the row-count variable of the profile's axis (Z, or T for a time series).
    long idRowSizeVar() const { return m_idRowSizeVar; }

protected:
    void BuildCRASchema();
    void BuildOrthoMDSchema();

private:
    // Observation variables of equal rank: 2 for several features, 1 for a single one.
    void CheckObservationShapes() const;

    SpatialFilter m_definitionQuery;
    eFeatureType m_featureType;
    long m_idRowSizeVar = -1;
};

}  // namespace ZorvoDSG
