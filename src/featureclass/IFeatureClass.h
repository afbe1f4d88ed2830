#pragma once
// One dataset (a file, or one group of it) read as features of a single DSG type: schema, spatial
// reference, and cursors that search the features with a spatial filter.

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <zorvodsg/cursor/SpatialFilter.h>
#include <zorvodsg/host/Wks.h>
#include <zorvodsg/netcdf/FeatureType.h>
#include <zorvodsg/netcdf/Variable.h>
#include <zorvodsg/json/ZorvoJSONWriter.h>

namespace ZorvoDSG {

class ICFMetadata;
class IFeatureCursor;
namespace SpaceTime {
class SpaceTimeReference;
}

class IFeatureClass {
public:
    virtual std::string Name() = 0;
    virtual Host::WKSEnvelopeZ Extent() = 0;
    virtual eFeatureType FeatureType() = 0;
    virtual std::shared_ptr<IFeatureCursor> Search(const SpatialFilter& filter) = 0;
    virtual SpatialFilter DefinitionQuery() = 0;
    virtual std::shared_ptr<SpaceTime::SpaceTimeReference> NativeSpatialReference() = 0;
    virtual uint64_t cFeatures() const = 0;
    virtual bool bHasZs() const = 0;
    virtual bool bHasTs() const = 0;
    virtual void ToZorvoJSON(ZorvoJSONWriter& writer) = 0;
    // The instance variable of this group-qualified name; Exception eVariableNotFound otherwise.
    virtual Variable InstanceVariable(const std::string& name) = 0;
    virtual const std::vector<Variable>& InstanceVariables() const = 0;
    virtual std::shared_ptr<ICFMetadata> CFMetadata() = 0;
    virtual Variable OIDVar() = 0;
    // The coordinate variables; an absent one fails as the dataset fails for an unknown id.
    virtual Variable XVar() = 0;
    virtual Variable YVar() = 0;
    virtual Variable ZVar() = 0;
    virtual Variable TVar() = 0;

protected:
    IFeatureClass() = default;
    IFeatureClass(const IFeatureClass&) = default;
    IFeatureClass& operator=(const IFeatureClass&) = default;
    ~IFeatureClass() = default;  // released through the shared pointer of the concrete class
};

}  // namespace ZorvoDSG
