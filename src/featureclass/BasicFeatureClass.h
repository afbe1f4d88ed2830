#pragma once
// The state and operations every feature class shares, and the factory that decides which kind a
// dataset becomes. The concrete classes build their whole schema in their constructors; afterwards
// a class is only read.
//
// s_Open failures: Exception eMultipleCfRoles, eUnknownFeatureType, eMissingCFRole,
// eFeatureTypeNotImplemented, and whatever the chosen class's schema builder raises.

#include <memory>
#include <string>
#include <vector>

#include <zorvodsg/featureclass/IFeatureClass.h>
#include <zorvodsg/featureclass/IWorkspace.h>
#include <zorvodsg/featureclass/eDSGLayout.h>
#include <zorvodsg/netcdf/ICFMetadata.h>
#include <zorvodsg/spacetime/CoordinateRoles.h>
#include <zorvodsg/spacetime/SpaceTimeReference.h>
#include <zorvodsg/values/ILog.h>

namespace ZorvoDSG {

class BasicFeatureClass : public IFeatureClass {
public:
    // The feature type comes from the cf_role variable, else the global featureType, else the hint.
    // Without a workspace the schema's messages go to a log of the class's own (OpeningLog()).
    static std::shared_ptr<BasicFeatureClass> s_Open(const std::shared_ptr<ICFMetadata>& dataset,
                                                     eFeatureType hint,
                                                     const std::shared_ptr<IWorkspace>& workspace);

    std::string Name() override { return m_name; }
    Host::WKSEnvelopeZ Extent() override { return m_extent; }
    std::shared_ptr<SpaceTime::SpaceTimeReference> NativeSpatialReference() override { return m_spatialReference; }
    uint64_t cFeatures() const override;
    bool bHasZs() const override { return m_idZVar >= 0; }
    bool bHasTs() const override { return m_idTVar >= 0; }
    Variable InstanceVariable(const std::string& name) override;
    const std::vector<Variable>& InstanceVariables() const override { return m_instanceVariables; }
    std::shared_ptr<ICFMetadata> CFMetadata() override { return m_dataset; }
    Variable OIDVar() override { return m_oidVariable; }
    Variable XVar() override { return m_dataset->GetVariable(m_idXVar); }
    Variable YVar() override { return m_dataset->GetVariable(m_idYVar); }
    Variable ZVar() override { return m_dataset->GetVariable(m_idZVar); }
    Variable TVar() override { return m_dataset->GetVariable(m_idTVar); }

    std::string GroupName() const { return m_groupName; }
    eDSGLayout Layout() const { return m_layout; }
    long idInstanceDim() const { return m_idInstanceDim; }
    long idXVar() const { return m_idXVar; }
    long idYVar() const { return m_idYVar; }
    long idZVar() const { return m_idZVar; }
    long idTVar() const { return m_idTVar; }
    // The messages of building the schema when the class was opened without a workspace; null when
    // they went to the workspace's log.
    std::shared_ptr<const System::ILog> OpeningLog() const { return m_openingLog; }

protected:
    BasicFeatureClass(const std::shared_ptr<ICFMetadata>& dataset, long idInstanceVar,
                      const std::shared_ptr<IWorkspace>& workspace);
    BasicFeatureClass(const BasicFeatureClass&) = default;
    BasicFeatureClass& operator=(const BasicFeatureClass&) = default;
    ~BasicFeatureClass() = default;

    // Name = dataset name + "_" + feature-type name; group name = that of the dataset's first variable.
    void ApplyNamingRule(eFeatureType type);
    // The workspace's current log, or the class's own when it has no workspace.
    System::ILog& SchemaLog();
    [[noreturn]] void Throw(long code, const std::string& detail) const;

    void CreateSR(const System::NcVariant& gridMapping, bool bZRequired, bool bTRequired, System::ILog& log);
    bool bCoordinateVar(long id) const;
    long FindCoordinateVar(const std::vector<std::string>& names, SpaceTime::eCoordinateRole role);
    void AssignCoordinateVars(const std::vector<std::string>& names, const std::vector<std::string>* fallback,
                              bool bZRequired, bool bTRequired);

    std::weak_ptr<IWorkspace> m_workspace;
    std::shared_ptr<ICFMetadata> m_dataset;
    Variable m_oidVariable;
    std::string m_name;
    std::string m_groupName;
    long m_idInstanceDim = -1;
    long m_idXVar = -1;
    long m_idYVar = -1;
    long m_idZVar = -1;
    long m_idTVar = -1;
    std::shared_ptr<SpaceTime::SpaceTimeReference> m_spatialReference;
    Host::WKSEnvelopeZ m_extent;
    std::vector<Variable> m_instanceVariables;
    eDSGLayout m_layout = eLayoutOrthoMD;
    std::shared_ptr<System::ILog> m_openingLog;
};

}  // namespace ZorvoDSG
