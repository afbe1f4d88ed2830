#include <zorvodsg/featureclass/BasicFeatureClass.h>

#include <variant>

#include <zorvodsg/featureclass/BasicPointFeatureClass.h>
#include <zorvodsg/featureclass/BasicProfileFeatureClass.h>
#include <zorvodsg/featureclass/BasicTrajectoryFeatureClass.h>
#include <zorvodsg/host/Utf8.h>
#include <zorvodsg/values/Exception.h>
#include <zorvodsg/values/NetCDFWorkspaceLog.h>

namespace ZorvoDSG {

namespace {

// The id of the first variable with cf_role and the feature type its value names; -1 without one.
struct CfRole {
    long id = -1;
    eFeatureType type = eFeatureUnknown;
    size_t cCarriers = 0;
};

CfRole FindCfRole(ICFMetadata& dataset) {
    CfRole role;
    const auto carriers = dataset.Att2Vars().find("cf_role");
    if (carriers == dataset.Att2Vars().end() || carriers->second.empty()) {
        return role;
    }
    role.id = carriers->second.front();
    role.cCarriers = carriers->second.size();
    role.type = ParseFeatureType(std::get<std::string>(dataset.GetVariable(role.id).AttributeValue("cf_role")));
    return role;
}

}  // namespace

std::shared_ptr<BasicFeatureClass> BasicFeatureClass::s_Open(const std::shared_ptr<ICFMetadata>& dataset,
                                                             eFeatureType hint,
                                                             const std::shared_ptr<IWorkspace>& workspace) {
    const std::filesystem::path path(dataset->Uri());
    const CfRole role = FindCfRole(*dataset);
    if (role.cCarriers > 1) {
        // Two cf_role variables are the mark of the nested types, which are not read: say so.
        const eFeatureType declared = dataset->FeatureType();
        if (declared == eFeatureTimeSeriesProfile || declared == eFeatureTrajectoryProfile) {
            throw Exception(eFeatureTypeNotImplemented, Host::Utf8ToWide(FeatureTypeName(declared)), path);
        }
        throw Exception(eMultipleCfRoles, Host::Utf8ToWide(FeatureTypeName(role.type)), path);
    }
    eFeatureType type = role.type;
    if (type == eFeatureUnknown) {
        type = dataset->FeatureType();
    }
    if (type == eFeatureUnknown) {
        type = hint;
    }
    switch (type) {
        case eFeatureUnknown:
            throw Exception(eUnknownFeatureType, L"", path);
        case eFeaturePoint:
            return std::make_shared<BasicPointFeatureClass>(dataset, workspace);
        case eFeatureProfile:
        case eFeatureTimeSeries:
            if (role.id < 0) {
                throw Exception(eMissingCFRole, L"", path);
            }
            return std::make_shared<BasicProfileFeatureClass>(type, dataset, role.id, workspace);
        case eFeatureTrajectory:
            if (role.id < 0) {
                throw Exception(eMissingCFRole, L"", path);
            }
            return std::make_shared<BasicTrajectoryFeatureClass>(type, dataset, role.id, workspace);
        default:
            throw Exception(eFeatureTypeNotImplemented, Host::Utf8ToWide(FeatureTypeName(type)), path);
    }
}

BasicFeatureClass::BasicFeatureClass(const std::shared_ptr<ICFMetadata>& dataset, long idInstanceVar,
                                     const std::shared_ptr<IWorkspace>& workspace)
    : m_workspace(workspace),
      m_dataset(dataset),
      m_oidVariable(idInstanceVar < 0 ? Variable::s_EmptyVariable() : dataset->GetVariable(idInstanceVar)) {
    if (!workspace) {
        m_openingLog = std::make_shared<ZorvoNetCDFDSG::NetCDFWorkspaceLog>();
    }
}

void BasicFeatureClass::ApplyNamingRule(eFeatureType type) {
    m_name = m_dataset->Name() + "_" + FeatureTypeName(type);
    try {
        m_groupName = m_dataset->GetVariable(0L).FullGroupName();
    } catch (const std::exception&) {
        m_groupName.clear();  // a dataset without variables
    }
}

System::ILog& BasicFeatureClass::SchemaLog() {
    if (m_openingLog) {
        return *m_openingLog;
    }
    const std::shared_ptr<IWorkspace> workspace = m_workspace.lock();
    if (!workspace) {
        throw std::bad_weak_ptr();
    }
    return workspace->CurrentLog();
}

void BasicFeatureClass::Throw(long code, const std::string& detail) const {
    throw Exception(code, Host::Utf8ToWide(detail), std::filesystem::path(m_dataset->Uri()));
}

uint64_t BasicFeatureClass::cFeatures() const { return m_dataset->DimLen(m_idInstanceDim); }

Variable BasicFeatureClass::InstanceVariable(const std::string& name) {
    for (const Variable& variable : m_instanceVariables) {
        if (variable.NameWithFullGroupName() == name) {
            return variable;
        }
    }
    Throw(eVariableNotFound, name);
}

bool BasicFeatureClass::bCoordinateVar(long id) const {
    return id == m_idXVar || id == m_idYVar || id == m_idZVar || id == m_idTVar;
}

long BasicFeatureClass::FindCoordinateVar(const std::vector<std::string>& names, SpaceTime::eCoordinateRole role) {
    for (const std::string& name : names) {
        const auto coordinate = m_dataset->Name2CoordVar().find(name);
        if (coordinate == m_dataset->Name2CoordVar().end() || coordinate->second.role != role) {
            continue;
        }
        const auto variable = m_dataset->Name2Var().find(name);
        return variable == m_dataset->Name2Var().end() ? -1 : variable->second;
    }
    return -1;
}

void BasicFeatureClass::AssignCoordinateVars(const std::vector<std::string>& names,
                                             const std::vector<std::string>* fallback, bool bZRequired,
                                             bool bTRequired) {
    m_idXVar = m_idYVar = m_idZVar = m_idTVar = -1;
    for (const std::string& name : names) {
        const auto coordinate = m_dataset->Name2CoordVar().find(name);
        if (coordinate == m_dataset->Name2CoordVar().end()) {
            Throw(eCoordNotFound, name);
        }
        switch (coordinate->second.role) {
            case SpaceTime::eCoordinateX: m_idXVar = coordinate->second.id; break;
            case SpaceTime::eCoordinateY: m_idYVar = coordinate->second.id; break;
            case SpaceTime::eCoordinateZ: m_idZVar = coordinate->second.id; break;
            case SpaceTime::eCoordinateT: m_idTVar = coordinate->second.id; break;
            default: Throw(eCoordUnclassified, name);
        }
    }
    if (fallback != nullptr) {
        if (bZRequired && m_idZVar == -1) {
            m_idZVar = FindCoordinateVar(*fallback, SpaceTime::eCoordinateZ);
        }
        if (bTRequired && m_idTVar == -1) {
            m_idTVar = FindCoordinateVar(*fallback, SpaceTime::eCoordinateT);
        }
    }
    if (m_idXVar == -1) {
        Throw(eMissingCoordinates, "X");
    }
    if (m_idYVar == -1) {
        Throw(eMissingCoordinates, "Y");
    }
    if (bZRequired && m_idZVar == -1) {
        Throw(eMissingCoordinates, "Z");
    }
    if (bTRequired && m_idTVar == -1) {
        Throw(eMissingCoordinates, "T");
    }
}

void BasicFeatureClass::CreateSR(const System::NcVariant& gridMapping, bool bZRequired, bool bTRequired,
                                 System::ILog& log) {
    System::AttributeMap properties;
    if (const auto* name = std::get_if<std::string>(&gridMapping)) {
        properties = m_dataset->GetVariable(*name).Attributes();
    }
    std::string zUnits;
    bool bZUp = true;
    SpaceTime::eVerticalDatumModel model = SpaceTime::eVerticalDatumUnspecified;
    if (m_idZVar == -1) {
        if (bZRequired) {
            Throw(eMissingVerticalUnits, "");
        }
    } else {
        const Variable z = m_dataset->GetVariable(m_idZVar);
        zUnits = z.UnitsString();
        const auto coordinate = m_dataset->Name2CoordVar().find(z.Name());
        if (coordinate == m_dataset->Name2CoordVar().end()) {
            Throw(eMissingCoordinates, "");
        }
        bZUp = coordinate->second.bZUp;
        model = coordinate->second.verticalDatumModel;
    }
    SpaceTime::TimeReference timeReference;
    if (m_idTVar == -1) {
        if (bTRequired) {
            Throw(eMissingTimeUnits, "");
        }
    } else {
        const auto coordinate = m_dataset->Name2CoordVar().find(m_dataset->GetVariable(m_idTVar).Name());
        if (coordinate == m_dataset->Name2CoordVar().end()) {
            Throw(eCoordNoUnits, "");
        }
        timeReference = coordinate->second.timeReference;
    }
    m_spatialReference = std::make_shared<SpaceTime::SpaceTimeReference>(gridMapping, properties, zUnits, bZUp, model,
                                                                         timeReference, log);
}

}  // namespace ZorvoDSG
