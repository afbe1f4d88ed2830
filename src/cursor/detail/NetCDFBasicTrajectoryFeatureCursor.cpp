#include <zorvodsg/cursor/detail/NetCDFBasicTrajectoryFeatureCursor.h>
#include <zorvodsg/values/ResourceLimits.h>

#include <algorithm>

namespace ZorvoNetCDFDSG {

using ZorvoDSG::TrajectoryFeature;
using detail::RaggedIndex;
using detail::SampleWindow;

NetCDFBasicTrajectoryFeatureCursor::NetCDFBasicTrajectoryFeatureCursor(
    std::shared_ptr<ZorvoDSG::BasicTrajectoryFeatureClass> trajectoryClass, const ZorvoDSG::SpatialFilter& filter)
    : NetCDFTrajectoryCursorImpl(std::move(trajectoryClass), filter) {
    ZorvoDSG::ICFMetadata& dataset = *m_trajectoryClass->CFMetadata();
    m_count = m_trajectoryClass->cFeatures();
    IndexFor(m_trajectoryClass->idRowSizeVar(), m_trajectoryClass->idObservationDim());
    const uint64_t coordinateBlock = BlockValues(0);
    m_coordinates.emplace_back(dataset, m_xVariable, coordinateBlock);
    m_coordinates.emplace_back(dataset, m_yVariable, coordinateBlock);
    m_coordinates.emplace_back(dataset, m_tVariable, coordinateBlock);
    if (m_trajectoryClass->bHasZs()) {
        m_coordinates.emplace_back(dataset, m_zVariable, coordinateBlock);
    }
    for (const ZorvoDSG::ObservationVariable& variable : m_observationVariables) {
        const size_t index = IndexFor(variable.idRowCountVar(), variable.idSampleDim());
        m_observationIndexes.push_back(index);
        m_observations.emplace_back(dataset, variable, BlockValues(index));
    }
}

size_t NetCDFBasicTrajectoryFeatureCursor::IndexFor(long idRowCountVar, long idSampleDim) {
    for (size_t i = 0; i < m_indexes.size(); ++i) {
        if (m_indexes[i].idRowSizeVar() == idRowCountVar) {
            return i;
        }
    }
    ZorvoDSG::ICFMetadata& dataset = *m_trajectoryClass->CFMetadata();
    m_indexes.emplace_back(m_reader, dataset, dataset.GetVariable(idRowCountVar), idSampleDim, m_blockSize);
    return m_indexes.size() - 1;
}

uint64_t NetCDFBasicTrajectoryFeatureCursor::BlockValues(size_t index) const {
    const RaggedIndex& rows = m_indexes[index];
    return s_BlockValues(m_blockSize, rows.Offset(rows.cInstances()) / std::max<uint64_t>(rows.cInstances(), 1));
}

void NetCDFBasicTrajectoryFeatureCursor::OnBlockSizeChanged() {
    NetCDFTrajectoryCursorImpl::OnBlockSizeChanged();
    for (SampleWindow& window : m_coordinates) {
        window.SetBlockValues(BlockValues(0));
    }
    for (size_t i = 0; i < m_observations.size(); ++i) {
        m_observations[i].SetBlockValues(BlockValues(m_observationIndexes[i]));
    }
}

std::shared_ptr<ZorvoDSG::Feature> NetCDFBasicTrajectoryFeatureCursor::CreateEmptyFeature() {
    return std::make_shared<TrajectoryFeature>(100, m_instanceVariables, m_observationVariables);
}

bool NetCDFBasicTrajectoryFeatureCursor::ReadVertices(TrajectoryFeature& feature) {
    const RaggedIndex& rows = m_indexes[0];
    const uint64_t n = rows.Count(m_position);
    if (n == 0) {
        feature.SetEmpty();
        return false;
    }
    const uint64_t first = rows.Offset(m_position);
    ZorvoDSG::System::CheckResourceLimit(n, ZorvoDSG::System::kMaxObservationsPerFeature,
                                         [this] { return "observations of trajectory " + std::to_string(m_position); }, m_reader.Path());
    feature.SetReserved(VertexCount(n));
    m_coordinates[0].CopyDoubles(m_reader, first, n, m_x);
    m_coordinates[1].CopyDoubles(m_reader, first, n, m_y);
    m_coordinates[2].CopyDoubles(m_reader, first, n, m_t);
    if (m_coordinates.size() > 3) {
        m_coordinates[3].CopyDoubles(m_reader, first, n, m_z);
    }
    SetGeometry(feature, n);
    return true;
}

void NetCDFBasicTrajectoryFeatureCursor::ReadObservations(TrajectoryFeature& feature) {
    for (size_t i = 0; i < m_observations.size(); ++i) {
        const RaggedIndex& rows = m_indexes[m_observationIndexes[i]];
        m_observations[i].Copy(m_reader, rows.Offset(m_position), rows.Count(m_position),
                               feature.ObservationValues(static_cast<long>(i)));
    }
}

}  // namespace ZorvoNetCDFDSG
