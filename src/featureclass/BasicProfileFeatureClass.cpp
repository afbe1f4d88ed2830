#include <zorvodsg/featureclass/BasicProfileFeatureClass.h>

#include <variant>

#include <zorvodsg/cursor/detail/NetCDFProfileCursors.h>
#include <zorvodsg/featureclass/ZorvoJSONFeatureSet.h>
#include <zorvodsg/values/Exception.h>

namespace ZorvoDSG {

BasicProfileFeatureClass::BasicProfileFeatureClass(eFeatureType type, const std::shared_ptr<ICFMetadata>& dataset,
                                                   long idCfRoleVar, const std::shared_ptr<IWorkspace>& workspace)
    : BasicObservationFeatureClass(dataset, idCfRoleVar, workspace), m_featureType(type) {
    ApplyNamingRule(type);
    if (m_dataset->Att2Vars().contains("sample_dimension")) {
        BuildCRASchema();
    } else {
        BuildOrthoMDSchema();
    }
}

uint64_t BasicProfileFeatureClass::cFeatures() const {
    return m_layout == eLayoutSingleInstance ? 1 : BasicFeatureClass::cFeatures();
}

std::shared_ptr<IFeatureCursor> BasicProfileFeatureClass::Search(const SpatialFilter& filter) {
    switch (m_layout) {
        case eLayoutOrthoMD:
        case eLayoutSingleInstance:
            return std::make_shared<ZorvoNetCDFDSG::NetCDFOrthoMDProfileCursor>(shared_from_this(), filter);
        case eLayoutCRA:
            return std::make_shared<ZorvoNetCDFDSG::NetCDFBasicProfileFeatureCursor>(shared_from_this(), filter);
        default:
            Throw(eInternalError, "unimplemented dsg profile/time series feature cursor");
    }
}

void BasicProfileFeatureClass::ToZorvoJSON(ZorvoJSONWriter& writer) { ZorvoJSONFeatureSet::s_Write(*this, writer); }

void BasicProfileFeatureClass::BuildCRASchema() {
    System::ILog& log = SchemaLog();
    m_idRowSizeVar = -1;
    SetRaggedInstanceDimension();
    const std::vector<long> rowCountVars = RaggedDiscovery(m_observationVariables, log);
    CheckRaggedConsistency(m_observationVariables, false);
    const bool bTimeSeries = m_featureType == eFeatureTimeSeries;
    // A copy: adding the ancillary variables below may move the list.
    const ZorvoDSG::ObservationVariable first = m_observationVariables.front();
    AssignCoordinateVars(first.ArrayAttributeValue("coordinates"), nullptr, !bTimeSeries, bTimeSeries);
    AddRaggedInstanceVariables();
    AddAVarsToOVars(log);
    const Variable axis = bTimeSeries ? TVar() : ZVar();
    if (axis.aidDims().empty()) {
        // A coordinate without a dimension cannot be counted by a row-size variable.
        Throw(eMissingZorTRowCountVar, axis.Name());
    }
    m_idRowSizeVar = RowCountVarFor(rowCountVars, axis.aidDims().front());
    if (m_idRowSizeVar == -1) {
        Throw(eMissingZorTRowCountVar, "");
    }
    CreateSR(first.AttributeValue("grid_mapping"), !bTimeSeries, bTimeSeries, log);
}

void BasicProfileFeatureClass::CheckObservationShapes() const {
    const int cDims = m_observationVariables.front().cDims();
    for (const ZorvoDSG::ObservationVariable& variable : m_observationVariables) {
        if (variable.cDims() != cDims) {
            Throw(eNotDSGConformant, "");
        }
    }
    if (cDims != (m_layout == eLayoutOrthoMD ? 2 : 1)) {
        Throw(eInstanceDimensionMismatch, "");
    }
}

void BasicProfileFeatureClass::BuildOrthoMDSchema() {
    System::ILog& log = SchemaLog();
    SetOrthogonalLayout();
    m_idRowSizeVar = -1;
    OrthogonalDiscovery(m_observationVariables, log);
    AddAVarsToOVars(log);
    CheckObservationShapes();
    const bool bTimeSeries = m_featureType == eFeatureTimeSeries;
    const ZorvoDSG::ObservationVariable& first = m_observationVariables.front();
    const std::vector<std::string> dimNames = first.aDimNames();
    AssignCoordinateVars(first.ArrayAttributeValue("coordinates"), &dimNames, !bTimeSeries, bTimeSeries);
    const System::NcVariant gridMapping = first.TryAttributeValue("grid_mapping");
    AddOrthogonalInstanceVariables(GridMappingVar(gridMapping), {});
    CreateSR(gridMapping, !bTimeSeries, bTimeSeries, log);
}

}  // namespace ZorvoDSG
