#include <zorvodsg/cursor/detail/NetCDFOrthoMDTrajectoryCursor.h>

#include <netcdf.h>

#include <zorvodsg/values/Exception.h>
#include <zorvodsg/values/NcLock.h>
#include <zorvodsg/values/ResourceLimits.h>

namespace ZorvoNetCDFDSG {

using ZorvoDSG::TrajectoryFeature;
using detail::RunSource;

NetCDFOrthoMDTrajectoryCursor::NetCDFOrthoMDTrajectoryCursor(
    std::shared_ptr<ZorvoDSG::BasicTrajectoryFeatureClass> trajectoryClass, const ZorvoDSG::SpatialFilter& filter)
    : NetCDFTrajectoryCursorImpl(std::move(trajectoryClass), filter) {
    size_t length = 0;
    const ZorvoDSG::System::NcLock lock;
    const int status = nc_inq_dimlen(m_reader.NcID(), static_cast<int>(m_trajectoryClass->idObservationDim()), &length);
    if (status != NC_NOERR) {
        throw ZorvoDSG::Exception(status, L"failure reading ortho-md vertex count", m_reader.Path());
    }
    m_cVertices = static_cast<uint64_t>(VertexCount(length));
    if (m_trajectoryClass->Layout() != ZorvoDSG::eLayoutSingleInstance) {
        m_count = m_trajectoryClass->cFeatures();
    }
    m_coordinates.push_back(MakeRun(m_xVariable));
    m_coordinates.push_back(MakeRun(m_yVariable));
    m_coordinates.push_back(MakeRun(m_tVariable));
    if (m_trajectoryClass->bHasZs()) {
        m_coordinates.push_back(MakeRun(m_zVariable));
    }
    for (const ZorvoDSG::ObservationVariable& variable : m_observationVariables) {
        m_observations.push_back(MakeRun(variable));
    }
}

// Rows of (instance, obs) arrays, columns of (obs, instance) ones, or the whole variable of a single
// trajectory; the class has checked that every variable is shaped like X.
RunSource NetCDFOrthoMDTrajectoryCursor::MakeRun(const ZorvoDSG::Variable& variable) const {
    const bool bSingle = m_trajectoryClass->Layout() == ZorvoDSG::eLayoutSingleInstance;
    return RunSource::Orthogonal(*m_trajectoryClass->CFMetadata(), variable,
                                 bSingle ? -1 : m_trajectoryClass->idInstanceDim(),
                                 s_BlockValues(m_blockSize, m_cVertices));
}

std::shared_ptr<ZorvoDSG::Feature> NetCDFOrthoMDTrajectoryCursor::CreateEmptyFeature() {
    return std::make_shared<TrajectoryFeature>(static_cast<long>(m_cVertices), m_instanceVariables,
                                               m_observationVariables);
}

void NetCDFOrthoMDTrajectoryCursor::OnBlockSizeChanged() {
    NetCDFTrajectoryCursorImpl::OnBlockSizeChanged();
    const uint64_t blockValues = s_BlockValues(m_blockSize, m_cVertices);
    for (RunSource& run : m_coordinates) {
        run.SetBlockValues(blockValues);
    }
    for (RunSource& run : m_observations) {
        run.SetBlockValues(blockValues);
    }
}

bool NetCDFOrthoMDTrajectoryCursor::ReadVertices(TrajectoryFeature& feature) {
    ZorvoDSG::System::CheckResourceLimit(m_cVertices, ZorvoDSG::System::kMaxObservationsPerFeature,
                                         "observations per trajectory", m_reader.Path());
    feature.SetReserved(static_cast<long>(m_cVertices));
    m_coordinates[0].ReadDoubles(m_reader, m_position, m_x);
    m_coordinates[1].ReadDoubles(m_reader, m_position, m_y);
    m_coordinates[2].ReadDoubles(m_reader, m_position, m_t);
    if (m_coordinates.size() > 3) {
        m_coordinates[3].ReadDoubles(m_reader, m_position, m_z);
    }
    for (const std::vector<double>* values : {&m_x, &m_y, &m_t}) {
        if (values->size() < m_cVertices) {
            throw ZorvoDSG::Exception(ZorvoDSG::eInstanceDimensionMismatch, L"coordinates shorter than X", m_reader.Path());
        }
    }
    SetGeometry(feature, m_cVertices);
    return true;
}

void NetCDFOrthoMDTrajectoryCursor::ReadObservations(TrajectoryFeature& feature) {
    for (size_t i = 0; i < m_observations.size(); ++i) {
        m_observations[i].Read(m_reader, m_position, feature.ObservationValues(static_cast<long>(i)));
    }
}

}  // namespace ZorvoNetCDFDSG
