#include <zorvodsg/cursor/detail/NetCDFTrajectoryCursorImpl.h>

#include <algorithm>
#include <cstdint>
#include <limits>
#include <tuple>

#include <zorvodsg/values/Exception.h>

namespace ZorvoNetCDFDSG {

using ZorvoDSG::ObservationVariable;
using ZorvoDSG::TrajectoryFeature;
using ZorvoDSG::SpaceTime::UnpackInfo;

namespace {

std::vector<ObservationVariable> SelectByName(const std::vector<std::string>& names,
                                              const std::vector<ObservationVariable>& available) {
    std::vector<ObservationVariable> selected;
    for (const std::string& name : names) {
        for (const ObservationVariable& variable : available) {
            if (variable.NameWithFullGroupName() == name) {
                selected.push_back(variable);
                break;
            }
        }
    }
    return selected;
}

}  // namespace

NetCDFTrajectoryCursorImpl::NetCDFTrajectoryCursorImpl(
    std::shared_ptr<ZorvoDSG::BasicTrajectoryFeatureClass> trajectoryClass, const ZorvoDSG::SpatialFilter& filter)
    : NetCDFCursorImpl(trajectoryClass, filter, trajectoryClass->idInstanceDim()),
      m_trajectoryClass(std::move(trajectoryClass)),
      m_observationVariables(SelectByName(m_filter.ObservationVariables(), m_trajectoryClass->ObservationVariables())),
      m_oid(*m_trajectoryClass->CFMetadata(), m_oidVariable, m_trajectoryClass->idInstanceDim(), m_blockSize) {
    bool bPacked = bAnyInstanceVariablePacked() || m_xVariable.IsPacked() || m_yVariable.IsPacked() ||
                   m_tVariable.IsPacked() || (m_trajectoryClass->bHasZs() && m_zVariable.IsPacked());
    for (const ObservationVariable& variable : m_observationVariables) {
        bPacked = bPacked || variable.IsPacked();
    }
    m_bUnpack = bPacked;
}

void NetCDFTrajectoryCursorImpl::OnBlockSizeChanged() { m_oid.SetBlockSize(m_blockSize); }

long NetCDFTrajectoryCursorImpl::VertexCount(uint64_t n) const {
    // The geometry counts its points in 32 bits.
    if (n > static_cast<uint64_t>(std::numeric_limits<int32_t>::max())) {
        throw ZorvoDSG::Exception(ZorvoDSG::eInternalError, L"trajectory with more vertices than a geometry holds",
                                  m_reader.Path());
    }
    return static_cast<long>(n);
}

uint64_t NetCDFTrajectoryCursorImpl::s_BlockValues(uint64_t blockInstances, uint64_t valuesPerInstance) {
    const uint64_t perInstance = std::max<uint64_t>(valuesPerInstance, 1);
    const uint64_t instances = std::clamp<uint64_t>(kMaxBlockValues / perInstance, 1, std::max<uint64_t>(blockInstances, 1));
    return instances * perInstance;
}

void NetCDFTrajectoryCursorImpl::SetGeometry(TrajectoryFeature& feature, uint64_t n) {
    ZorvoDSG::SpaceTime::WKSTrajectory& geometry = feature.wksTrajectory();
    const bool bHasZ = m_trajectoryClass->bHasZs();
    geometry.Set(VertexCount(n), m_x.data(), m_y.data(), bHasZ ? m_z.data() : nullptr, m_t.data(), m_missing);
    if (!m_bUnpack || geometry.count == 0) {
        return;
    }
    UnpackInfo info;
    const auto flag = [&info](const ZorvoDSG::Variable& variable, uint8_t bit, double& scale, double& offset) {
        if (variable.IsPacked()) {
            info.flags |= bit;
            std::tie(scale, offset) = variable.UnpackInfo();
        }
    };
    flag(m_xVariable, UnpackInfo::eX, info.xScale, info.xOffset);
    flag(m_yVariable, UnpackInfo::eY, info.yScale, info.yOffset);
    if (bHasZ) {
        flag(m_zVariable, UnpackInfo::eZ, info.zScale, info.zOffset);
    }
    flag(m_tVariable, UnpackInfo::eT, info.tScale, info.tOffset);
    if (info.flags != 0) {
        geometry.Unpack(info);
    }
}

void NetCDFTrajectoryCursorImpl::UnpackObservations(TrajectoryFeature& feature) {
    if (!m_bUnpack) {
        return;
    }
    for (size_t i = 0; i < m_observationVariables.size(); ++i) {
        const ObservationVariable& variable = m_observationVariables[i];
        if (variable.IsPacked()) {
            variable.Unpack(feature.ObservationValues(static_cast<long>(i)));
        }
    }
}

bool NetCDFTrajectoryCursorImpl::ReadNext(TrajectoryFeature& feature, bool bFilter) {
    for (; m_position < m_count; ++m_position) {
        const bool bHasVertices = ReadVertices(feature);
        if (bFilter && m_filter.Envelope().Disjoint(feature.Extent())) {
            continue;
        }
        feature.SetOID(m_oid.Value(m_reader, m_position));
        feature.SetInstanceID(m_position);
        // An instance without vertices carries only its object id and instance id.
        if (bHasVertices) {
            ReadInstanceValues(m_position, feature);
            ReadObservations(feature);
            UnpackObservations(feature);
        }
        ++m_position;
        return true;
    }
    return false;
}

bool NetCDFTrajectoryCursorImpl::BasicNext(std::shared_ptr<ZorvoDSG::Feature> feature) {
    return ReadNext(s_FeatureAs<TrajectoryFeature>(*feature), false);
}

bool NetCDFTrajectoryCursorImpl::QueryNext(std::shared_ptr<ZorvoDSG::Feature> feature) {
    return ReadNext(s_FeatureAs<TrajectoryFeature>(*feature), !bEmptyFilter());
}

}  // namespace ZorvoNetCDFDSG
