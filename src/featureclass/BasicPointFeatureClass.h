#pragma once
// A CF point dataset as a feature class: every element of the observation dimension is one point.
// The schema comes from the first variable with a `coordinates` attribute: its first dimension
// counts the features, its coordinates give X, Y (required), Z and T, and every other variable
// along that dimension with at most one dimension (two for strings) is an attribute field.
//
// Failures: Exception eNoObservationVariables (no `coordinates` anywhere), eInstanceDimension (that
// variable has too many dimensions), and those of coordinate assignment and the spatial reference.

#include <memory>

#include <zorvodsg/featureclass/BasicFeatureClass.h>

namespace ZorvoDSG {

class BasicPointFeatureClass : public BasicFeatureClass,
                               public std::enable_shared_from_this<BasicPointFeatureClass> {
public:
    BasicPointFeatureClass(const std::shared_ptr<ICFMetadata>& dataset, const std::shared_ptr<IWorkspace>& workspace);

    eFeatureType FeatureType() override { return eFeaturePoint; }
    std::shared_ptr<IFeatureCursor> Search(const SpatialFilter& filter) override;
    SpatialFilter DefinitionQuery() override { return SpatialFilter(); }
    // A point class has no members of its own in ZorvoJSON: an empty object.
    void ToZorvoJSON(ZorvoJSONWriter& writer) override;

    bool bHasZ() const { return bHasZs(); }
    bool bHasT() const { return bHasTs(); }

protected:
    void BuildSchema();
    void BuildDSGSchema(System::ILog& log);
    void BuildGriddedSchema(System::ILog& log);

private:
    // Appends the variables along the observation dimension that can be fields; logs the others.
    void AddInstanceVariables(System::ILog& log);
};

}  // namespace ZorvoDSG
