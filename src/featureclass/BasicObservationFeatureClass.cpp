#include <zorvodsg/featureclass/BasicObservationFeatureClass.h>

#include <algorithm>
#include <stdexcept>
#include <variant>

#include <zorvodsg/values/Exception.h>

namespace ZorvoDSG {

namespace {

const std::vector<long>& IdsOrNone(const ICFMetadata::AttMap& map, const std::string& key) {
    static const std::vector<long> kNone;
    const auto found = map.find(key);
    return found == map.end() ? kNone : found->second;
}

// Variables created by NcML or by classification have no type and no data in the file.
bool bHasData(const Variable& variable) {
    try {
        return variable.Type() != 0 && variable.cDims() >= 0;
    } catch (const std::runtime_error&) {
        return false;
    }
}

bool Contains(const std::vector<long>& ids, long id) { return std::find(ids.begin(), ids.end(), id) != ids.end(); }

}  // namespace

BasicObservationFeatureClass::BasicObservationFeatureClass(const std::shared_ptr<ICFMetadata>& dataset,
                                                           long idInstanceVar,
                                                           const std::shared_ptr<IWorkspace>& workspace)
    : BasicFeatureClass(dataset, idInstanceVar, workspace) {}

ZorvoDSG::ObservationVariable BasicObservationFeatureClass::ObservationVariable(const std::string& name) {
    for (const ZorvoDSG::ObservationVariable& variable : ObservationVariables()) {
        if (variable.NameWithFullGroupName() == name) {
            return variable;
        }
    }
    Throw(eVariableNotFound, name);
}

void BasicObservationFeatureClass::AddAVarsToOVars(std::vector<ZorvoDSG::ObservationVariable>& list,
                                                   System::ILog& log) {
    const size_t cBefore = list.size();
    const auto bListed = [&](const Variable& ancillary) {
        return std::any_of(list.begin(), list.begin() + static_cast<long>(cBefore), [&](const Variable& v) {
            return v.NameWithFullGroupName() == ancillary.NameWithFullGroupName();
        });
    };
    std::vector<ZorvoDSG::ObservationVariable> found;
    for (size_t i = 0; i < cBefore; ++i) {
        for (const Variable& ancillary : list[i].AncillaryVariables()) {
            if (!bListed(ancillary)) {
                found.emplace_back(ancillary, list[i].idRowCountVar(), list[i].idSampleDim(), log);
            }
        }
    }
    list.insert(list.end(), found.begin(), found.end());
}

void BasicObservationFeatureClass::SetRaggedInstanceDimension() {
    if (m_dataset->Att2Vars().contains("instance_dimension")) {
        // Indexed ragged arrays (an index variable per observation) are not read.
        Throw(eInstanceDimensionMismatch, "indexed ragged array layout is not supported");
    }
    const int cDims = m_oidVariable.cDims();
    if (cDims > 2 || (cDims == 2 && !m_oidVariable.IsString())) {
        Throw(eInstanceDimension, m_oidVariable.NameWithFullGroupName());
    }
    if (cDims == 0) {
        // A ragged array of a single feature without an instance dimension has no counts to read.
        Throw(eInstanceDimension, m_oidVariable.NameWithFullGroupName());
    }
    m_layout = eLayoutCRA;
    m_idInstanceDim = m_oidVariable.aidDims().front();
}

std::vector<long> BasicObservationFeatureClass::RaggedDiscovery(std::vector<ZorvoDSG::ObservationVariable>& list,
                                                                System::ILog& log) {
    std::vector<long> rowCountVars;
    for (const long id : IdsOrNone(m_dataset->Att2Vars(), "sample_dimension")) {
        const Variable& candidate = m_dataset->GetVariable(id);
        if (candidate.cDims() != 1) {
            Throw(eRowCountDimension, "");
        }
        if (candidate.aidDims().front() == m_idInstanceDim) {
            rowCountVars.push_back(id);
        }
    }
    for (const long idRowCount : rowCountVars) {
        const long idSampleDim = SampleDimensionOf(idRowCount);
        const auto along = m_dataset->Dim2Vars().find(idSampleDim);
        if (along == m_dataset->Dim2Vars().end()) {
            continue;
        }
        for (const long id : along->second) {
            const Variable& variable = m_dataset->GetVariable(id);
            if (variable.HasAttribute("coordinates")) {
                list.emplace_back(variable, idRowCount, idSampleDim, log);
            }
        }
    }
    if (list.empty()) {
        Throw(eNoObservationVariables, "");
    }
    return rowCountVars;
}

void BasicObservationFeatureClass::CheckRaggedConsistency(const std::vector<ZorvoDSG::ObservationVariable>& list,
                                                          bool bCompareVerticalCRS) {
    const ZorvoDSG::ObservationVariable& first = list.front();
    const std::string firstGridMapping = std::get<std::string>(first.AttributeValue("grid_mapping"));
    const std::vector<std::string> firstCoordinates = first.ArrayAttributeValue("coordinates");
    const System::NcVariant firstVertical = first.TryAttributeValue("vertical_crs_definition");
    for (const ZorvoDSG::ObservationVariable& variable : list) {
        const std::string gridMapping = std::get<std::string>(variable.AttributeValue("grid_mapping"));
        if (gridMapping != firstGridMapping) {
            Throw(eSRConflict, firstGridMapping + ", " + gridMapping);
        }
        if (bCompareVerticalCRS) {
            const System::NcVariant vertical = variable.TryAttributeValue("vertical_crs_definition");
            // Values of different kinds differ; they are never compared as numbers.
            if (vertical.index() != firstVertical.index() || !(vertical == firstVertical)) {
                Throw(eSRConflict, "vertical_crs_definition");
            }
        }
        if (variable.ArrayAttributeValue("coordinates") != firstCoordinates) {
            Throw(eObservationCoordinateMismatch, std::get<std::string>(first.AttributeValue("coordinates")) + ", " +
                                                      std::get<std::string>(variable.AttributeValue("coordinates")));
        }
    }
}

std::vector<long> BasicObservationFeatureClass::OrthogonalDiscovery(std::vector<ZorvoDSG::ObservationVariable>& list,
                                                                    System::ILog& log) {
    const std::vector<long>& ids = IdsOrNone(m_dataset->Att2Vars(), "coordinates");
    if (ids.empty()) {
        Throw(eNoObservationVariables, "");
    }
    for (const long id : ids) {
        list.emplace_back(m_dataset->GetVariable(id), log);
    }
    return ids;
}

void BasicObservationFeatureClass::SetOrthogonalLayout() {
    m_layout = eLayoutOrthoMD;
    m_idInstanceDim = -1;
    if (m_oidVariable.cDims() >= 1) {
        const long firstDim = m_oidVariable.aidDims().front();
        // A single string of characters (char name(name_strlen)) names one feature: its dimension is
        // the string's length when no observation variable runs along it.
        bool bAlongObservations = false;
        for (const long id : IdsOrNone(m_dataset->Att2Vars(), "coordinates")) {
            bAlongObservations = bAlongObservations || m_dataset->GetVariable(id).HasDim(firstDim);
        }
        if (bAlongObservations || m_oidVariable.cDims() > 1) {
            m_oidVariable.ReclassifyString(firstDim);
        }
    }
    m_oidVariable.ClassifyString();
    if (m_oidVariable.IsStringScalar() || m_oidVariable.cDims() == 0) {
        m_layout = eLayoutSingleInstance;
        return;
    }
    m_idInstanceDim = m_oidVariable.aidDims().front();
}

void BasicObservationFeatureClass::AddRaggedInstanceVariables() {
    const auto along = m_dataset->Dim2Vars().find(m_idInstanceDim);
    if (along == m_dataset->Dim2Vars().end()) {
        return;
    }
    std::vector<long> ids = along->second;
    std::sort(ids.begin(), ids.end());
    const std::vector<long>& rowCounts = IdsOrNone(m_dataset->Att2Vars(), "sample_dimension");
    for (const long id : ids) {
        if (Contains(rowCounts, id) || bCoordinateVar(id) || id == m_oidVariable.Id()) {
            continue;
        }
        m_instanceVariables.push_back(m_dataset->GetVariable(id));
    }
}

void BasicObservationFeatureClass::AddOrthogonalInstanceVariables(long idGridMapping, const std::vector<long>& skip) {
    // Every variable with data, scalars included, in ascending id order so that the schema is the
    // same at every run.
    std::vector<long> ids;
    for (const auto& [name, id] : m_dataset->Name2Var()) {
        ids.push_back(id);
    }
    std::sort(ids.begin(), ids.end());
    for (const long id : ids) {
        if (id == m_oidVariable.Id() || bCoordinateVar(id) || id == idGridMapping || Contains(skip, id)) {
            continue;
        }
        Variable& variable = m_dataset->GetVariable(id);
        if (!bHasData(variable)) {
            continue;
        }
        const int cDims = variable.cDims();
        bool bQualifies = false;
        if (m_layout == eLayoutOrthoMD) {
            const long first = cDims > 0 ? variable.aidDims().front() : -1;
            bQualifies = (cDims == 1 && first == m_idInstanceDim) || (variable.IsString() && first == m_idInstanceDim);
        } else {
            bQualifies = cDims == 0 || variable.IsStringScalar();
        }
        if (bQualifies) {
            m_instanceVariables.push_back(variable);
        }
    }
}

long BasicObservationFeatureClass::SampleDimensionOf(long idRowCountVar) {
    const std::string name =
        std::get<std::string>(m_dataset->GetVariable(idRowCountVar).AttributeValue("sample_dimension"));
    const auto dim = m_dataset->Name2Dim().find(name);
    if (dim == m_dataset->Name2Dim().end()) {
        Throw(eBadSampleDimension, name);
    }
    return dim->second;
}

long BasicObservationFeatureClass::RowCountVarFor(const std::vector<long>& rowCountVars, long dimId) {
    for (const long id : rowCountVars) {
        if (SampleDimensionOf(id) == dimId) {
            return id;
        }
    }
    return -1;
}

long BasicObservationFeatureClass::GridMappingVar(const System::NcVariant& gridMapping) {
    const auto* name = std::get_if<std::string>(&gridMapping);
    return name != nullptr ? m_dataset->GetVariable(*name).Id() : -1;
}

}  // namespace ZorvoDSG
