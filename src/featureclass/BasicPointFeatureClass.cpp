#include <zorvodsg/featureclass/BasicPointFeatureClass.h>

#include <zorvodsg/cursor/detail/NetCDFBasicPointFeatureCursor.h>
#include <zorvodsg/host/Utf8.h>
#include <zorvodsg/values/Exception.h>
#include <zorvodsg/values/LogCodes.h>

namespace ZorvoDSG {

BasicPointFeatureClass::BasicPointFeatureClass(const std::shared_ptr<ICFMetadata>& dataset,
                                               const std::shared_ptr<IWorkspace>& workspace)
    : BasicFeatureClass(dataset, -1, workspace) {
    ApplyNamingRule(eFeaturePoint);
    BuildSchema();
}

std::shared_ptr<IFeatureCursor> BasicPointFeatureClass::Search(const SpatialFilter& filter) {
    if (m_layout != eLayoutPoint) {
        Throw(eInternalError, "dsg point feature cursor");
    }
    return std::make_shared<ZorvoNetCDFDSG::NetCDFBasicPointFeatureCursor>(shared_from_this(), filter);
}

void BasicPointFeatureClass::ToZorvoJSON(ZorvoJSONWriter& writer) {
    writer.StartObject();
    writer.EndObject();
}

void BasicPointFeatureClass::BuildSchema() { BuildDSGSchema(SchemaLog()); }

void BasicPointFeatureClass::BuildGriddedSchema(System::ILog&) { m_layout = eLayoutGridded; }

void BasicPointFeatureClass::BuildDSGSchema(System::ILog& log) {
    m_layout = eLayoutPoint;
    const auto carriers = m_dataset->Att2Vars().find("coordinates");
    if (carriers == m_dataset->Att2Vars().end() || carriers->second.empty()) {
        Throw(eNoObservationVariables, "");
    }
    Variable& observation = m_dataset->GetVariable(carriers->second.front());
    const int cDims = observation.cDims();
    if (cDims > 2 || (cDims == 2 && !observation.IsString())) {
        Throw(eInstanceDimension, observation.NameWithFullGroupName());
    }
    const std::vector<std::string> dimNames = observation.aDimNames();
    AssignCoordinateVars(observation.ArrayAttributeValue("coordinates"), &dimNames, false, false);
    const std::vector<long> dims = observation.aidDims();
    if (dims.empty()) {
        // A scalar has no dimension that could count features.
        Throw(eInstanceDimension, observation.NameWithFullGroupName());
    }
    m_idInstanceDim = dims.front();
    AddInstanceVariables(log);
    CreateSR(observation.TryAttributeValue("grid_mapping"), false, false, log);
    m_oidVariable = Variable::s_FakeOIDVariable();
}

void BasicPointFeatureClass::AddInstanceVariables(System::ILog& log) {
    const auto along = m_dataset->Dim2Vars().find(m_idInstanceDim);
    if (along == m_dataset->Dim2Vars().end()) {
        return;
    }
    for (const long id : along->second) {
        if (bCoordinateVar(id)) {
            continue;
        }
        Variable& variable = m_dataset->GetVariable(id);
        variable.ReclassifyString(m_idInstanceDim);
        variable.ClassifyString();
        const int cDims = variable.cDims();
        const bool bQualifies = variable.IsString() ? cDims < 3 : cDims <= 1;
        if (bQualifies) {
            m_instanceVariables.push_back(variable);
        } else {
            log.AddMessage(System::eLogVariableTooManyDimensions, Host::Utf8ToWide(variable.NameWithFullGroupName()));
        }
    }
}

}  // namespace ZorvoDSG
