#include <zorvodsg/featureclass/ZorvoJSONFeatureSet.h>
#include <zorvodsg/featureclass/BasicTrajectoryFeatureClass.h>

#include <netcdf.h>

#include <algorithm>
#include <stdexcept>
#include <variant>

#include <zorvodsg/cursor/detail/NetCDFBasicTrajectoryFeatureCursor.h>
#include <zorvodsg/cursor/detail/NetCDFOrthoMDTrajectoryCursor.h>
#include <zorvodsg/host/Utf8.h>
#include <zorvodsg/values/Exception.h>
#include <zorvodsg/values/LogCodes.h>

namespace ZorvoDSG {

namespace {

// A variable runs along `runDims` when it has exactly those dimensions; a character variable also
// with one more, its string axis. Characters without a string axis beside the run would be read as
// one string per row, so a multidimensional run of single characters does not qualify.
// Variables without a type (made by NcML) have no values to read and run along nothing.
bool bRunsAlong(const Variable& variable, const std::vector<long>& runDims) {
    int type = 0;
    try {
        type = variable.Type();
    } catch (const std::runtime_error&) {
        return false;
    }
    const std::vector<long> dims = variable.aidDims();
    if (type == NC_CHAR && dims.size() == runDims.size() + 1) {
        return std::equal(runDims.begin(), runDims.end(), dims.begin());
    }
    return dims == runDims && (type != NC_CHAR || dims.size() == 1);
}

}  // namespace

BasicTrajectoryFeatureClass::BasicTrajectoryFeatureClass(eFeatureType type,
                                                         const std::shared_ptr<ICFMetadata>& dataset,
                                                         long idCfRoleVar,
                                                         const std::shared_ptr<IWorkspace>& workspace)
    : BasicObservationFeatureClass(dataset, idCfRoleVar, workspace), m_featureType(type) {
    ApplyNamingRule(eFeatureTrajectory);
    // Indexed ragged arrays go the ragged way too, where they are refused by name.
    const ICFMetadata::AttMap& attributes = m_dataset->Att2Vars();
    if (attributes.contains("sample_dimension") || attributes.contains("instance_dimension")) {
        BuildCRASchema();
    } else {
        BuildOrthoMDSchema();
    }
}

uint64_t BasicTrajectoryFeatureClass::cFeatures() const {
    return m_layout == eLayoutSingleInstance ? 1 : m_dataset->DimLen(m_idInstanceDim);
}

std::shared_ptr<IFeatureCursor> BasicTrajectoryFeatureClass::Search(const SpatialFilter& filter) {
    switch (m_layout) {
        case eLayoutOrthoMD:
        case eLayoutSingleInstance:
            return std::make_shared<ZorvoNetCDFDSG::NetCDFOrthoMDTrajectoryCursor>(shared_from_this(), filter);
        case eLayoutCRA:
            return std::make_shared<ZorvoNetCDFDSG::NetCDFBasicTrajectoryFeatureCursor>(shared_from_this(), filter);
        default:
            Throw(eInternalError, "unimplemented dsg trajectory feature cursor");
    }
}

void BasicTrajectoryFeatureClass::ToZorvoJSON(ZorvoJSONWriter& writer) { ZorvoJSONFeatureSet::s_Write(*this, writer); }

void BasicTrajectoryFeatureClass::BuildCRASchema() {
    System::ILog& log = SchemaLog();
    m_layout = eLayoutCRA;
    m_idRowSizeVar = -1;
    SetRaggedInstanceDimension();
    const std::vector<long> rowCountVars = RaggedDiscovery(m_trajectoryObservations, log);
    CheckRaggedConsistency(m_trajectoryObservations, true);
    const ZorvoDSG::ObservationVariable first = m_trajectoryObservations.front();
    AssignCoordinateVars(first.ArrayAttributeValue("coordinates"), nullptr, false, true);
    AddRaggedInstanceVariables();
    AddAVarsToOVars(m_trajectoryObservations, log);

    const std::vector<long> xDims = m_dataset->GetVariable(m_idXVar).aidDims();
    if (xDims.empty()) {
        Throw(eCoordNotFound, "");
    }
    if (xDims.size() != 1) {
        // Every coordinate of a vertex is read at the same offset of one sample dimension.
        Throw(eInstanceDimensionMismatch, m_dataset->GetVariable(m_idXVar).NameWithFullGroupName());
    }
    m_idObservationDim = xDims.front();
    CheckCoordinateShapes();
    m_idRowSizeVar = RowCountVarFor(rowCountVars, m_idObservationDim);
    if (m_idRowSizeVar < 0) {
        Throw(eMissingTrajectoryRowCountVar, "");
    }
    CreateSR(first.AttributeValue("grid_mapping"), false, true, log);
    DropMisshapenObservations(log);
}

void BasicTrajectoryFeatureClass::BuildOrthoMDSchema() {
    System::ILog& log = SchemaLog();
    SetOrthogonalLayout();
    m_idRowSizeVar = -1;
    const std::vector<long> observationIds = OrthogonalDiscovery(m_trajectoryObservations, log);
    AddAVarsToOVars(m_trajectoryObservations, log);
    const ZorvoDSG::ObservationVariable first = m_trajectoryObservations.front();
    const std::vector<std::string> dimNames = first.aDimNames();
    AssignCoordinateVars(first.ArrayAttributeValue("coordinates"), &dimNames, false, true);

    // X is (instance, obs) or (obs, instance) for several trajectories, (obs) for one. A shared
    // X(obs) beside an instance dimension is not a trajectory layout: its vertices would belong to
    // every trajectory at once.
    const Variable& x = m_dataset->GetVariable(m_idXVar);
    const std::vector<long> xDims = x.aidDims();
    if (m_layout == eLayoutSingleInstance && xDims.size() == 1) {
        m_idObservationDim = xDims.front();
    } else if (m_layout == eLayoutOrthoMD && xDims.size() == 2 && xDims[0] != xDims[1] &&
               (xDims[0] == m_idInstanceDim || xDims[1] == m_idInstanceDim)) {
        m_idObservationDim = xDims[0] == m_idInstanceDim ? xDims[1] : xDims[0];
    } else {
        Throw(eInstanceDimensionMismatch, x.NameWithFullGroupName());
    }
    CheckCoordinateShapes();

    const System::NcVariant gridMapping = first.TryAttributeValue("grid_mapping");
    AddOrthogonalInstanceVariables(GridMappingVar(gridMapping), observationIds);
    CreateSR(gridMapping, false, true, log);
    DropMisshapenObservations(log);
}

std::vector<long> BasicTrajectoryFeatureClass::RunDims() const { return m_dataset->GetVariable(m_idXVar).aidDims(); }

void BasicTrajectoryFeatureClass::CheckCoordinateShapes() {
    const std::vector<long> runDims = RunDims();
    for (const long id : {m_idYVar, m_idZVar, m_idTVar}) {
        if (id < 0) {
            continue;
        }
        const Variable& coordinate = m_dataset->GetVariable(id);
        if (coordinate.aidDims() != runDims) {
            Throw(eInstanceDimensionMismatch, coordinate.NameWithFullGroupName());
        }
    }
}

void BasicTrajectoryFeatureClass::DropMisshapenObservations(System::ILog& log) {
    const std::vector<long> runDims = RunDims();
    std::vector<ZorvoDSG::ObservationVariable> kept;
    for (const ZorvoDSG::ObservationVariable& variable : m_trajectoryObservations) {
        const bool bRagged = variable.idSampleDim() >= 0;
        if (bRunsAlong(variable, bRagged ? std::vector<long>{variable.idSampleDim()} : runDims)) {
            kept.push_back(variable);
        } else {
            log.AddMessage(System::eLogVariableTooManyDimensions,
                           Host::Utf8ToWide(variable.NameWithFullGroupName()));
        }
    }
    m_trajectoryObservations = std::move(kept);
}

}  // namespace ZorvoDSG
