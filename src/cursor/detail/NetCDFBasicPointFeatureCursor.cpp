#include <zorvodsg/cursor/detail/NetCDFBasicPointFeatureCursor.h>

#include <cmath>
#include <algorithm>
#include <cstdint>
#include <limits>

namespace ZorvoNetCDFDSG {


namespace {

// Object ids are 32-bit while they fit. Written in place: the OID is set for every feature.
void SetObjectId(uint64_t position, ZorvoDSG::System::NcVariant& oid) {
    if (position <= static_cast<uint64_t>(std::numeric_limits<int32_t>::max())) {
        oid.emplace<int32_t>(static_cast<int32_t>(position));
    } else {
        oid.emplace<int64_t>(static_cast<int64_t>(position));
    }
}

}  // namespace

NetCDFBasicPointFeatureCursor::NetCDFBasicPointFeatureCursor(
    std::shared_ptr<ZorvoDSG::BasicPointFeatureClass> pointClass, const ZorvoDSG::SpatialFilter& filter)
    : NetCDFCursorImpl(pointClass, filter, pointClass->idInstanceDim()),
      m_pointClass(std::move(pointClass)),
      m_count(m_pointClass->CFMetadata()->DimLen(m_pointClass->idInstanceDim())),
      m_x(*m_pointClass->CFMetadata(), m_xVariable, m_pointClass->idInstanceDim(), m_blockSize),
      m_y(*m_pointClass->CFMetadata(), m_yVariable, m_pointClass->idInstanceDim(), m_blockSize),
      m_inEnvelope(m_filter.Envelope()) {
    ZorvoDSG::ICFMetadata& dataset = *m_pointClass->CFMetadata();
    if (m_pointClass->bHasZs()) {
        m_z.emplace(dataset, m_zVariable, m_pointClass->idInstanceDim(), m_blockSize);
    }
    if (m_pointClass->bHasTs()) {
        m_t.emplace(dataset, m_tVariable, m_pointClass->idInstanceDim(), m_blockSize);
    }
    m_x.ReplaceMissing(m_missing.x);
    m_y.ReplaceMissing(m_missing.y);
    if (m_z) {
        m_z->ReplaceMissing(m_missing.z);
    }
    if (m_t) {
        m_t->ReplaceMissing(m_missing.t);
    }
    m_bPackedCoordinates = m_xVariable.IsPacked() || m_yVariable.IsPacked() ||
                           (m_pointClass->bHasTs() && m_tVariable.IsPacked()) ||
                           (m_pointClass->bHasZs() && m_zVariable.IsPacked());
    m_bUnpack = bAnyInstanceVariablePacked() || m_bPackedCoordinates;
}

std::shared_ptr<ZorvoDSG::Feature> NetCDFBasicPointFeatureCursor::CreateEmptyFeature() {
    return std::make_shared<ZorvoDSG::PointFeature>(m_instanceVariables);
}

void NetCDFBasicPointFeatureCursor::OnBlockSizeChanged() {
    m_blockEnd = 0;
    m_instanceBlockEnd = 0;
    m_x.SetBlockSize(m_blockSize);
    m_y.SetBlockSize(m_blockSize);
    if (m_z) {
        m_z->SetBlockSize(m_blockSize);
    }
    if (m_t) {
        m_t->SetBlockSize(m_blockSize);
    }
}

void NetCDFBasicPointFeatureCursor::LoadBlock() {
    uint64_t end = std::min(m_x.Prepare(m_reader, m_position), m_y.Prepare(m_reader, m_position));
    if (m_z) {
        end = std::min(end, m_z->Prepare(m_reader, m_position));
    }
    if (m_t) {
        end = std::min(end, m_t->Prepare(m_reader, m_position));
    }
    m_blockEnd = std::min(end, m_count);
}

void NetCDFBasicPointFeatureCursor::LoadInstanceBlock() {
    // Only once a point of the block passes the filter: a small envelope skips most blocks.
    uint64_t end = m_count;
    for (detail::InstanceColumn& column : m_instanceColumns) {
        end = std::min(end, column.Prepare(m_reader, m_position));
    }
    m_instanceBlockEnd = end;
}

void NetCDFBasicPointFeatureCursor::ReadPoint(ZorvoDSG::PointFeature& feature) {
    if (m_position >= m_blockEnd) {
        LoadBlock();
    }
    ZorvoDSG::Host::WKSPointZ& point = feature.MutablePoint();
    point.x = m_x.ValueLoaded(m_position);
    point.y = m_y.ValueLoaded(m_position);
    if (m_z) {
        point.z = m_z->ValueLoaded(m_position);
    }
    if (m_t) {
        feature.MutableTime() = m_t->ValueLoaded(m_position);
    }
    // Instance values are unpacked by their columns; here only the coordinates are.
    if (!m_bPackedCoordinates) {
        return;
    }
    if (!point.IsEmpty()) {
        point.x = m_xVariable.Unpack(point.x);
        point.y = m_yVariable.Unpack(point.y);
        if (m_z) {
            point.z = m_zVariable.Unpack(point.z);
        }
    }
    if (m_t && !std::isnan(feature.Time())) {
        feature.MutableTime() = m_tVariable.Unpack(feature.Time());
    }
}

void NetCDFBasicPointFeatureCursor::FinishPoint(ZorvoDSG::PointFeature& feature) {
    SetObjectId(m_position, feature.MutableOID());
    feature.SetInstanceID(m_position);
    if (m_position >= m_instanceBlockEnd) {
        LoadInstanceBlock();
    }
    ReadLoadedInstanceValues(m_position, feature);
    ++m_position;
}

bool NetCDFBasicPointFeatureCursor::BasicNext(std::shared_ptr<ZorvoDSG::Feature> feature) {
    if (m_position >= m_count) {
        return false;
    }
    auto& point = s_FeatureAs<ZorvoDSG::PointFeature>(*feature);
    ReadPoint(point);
    FinishPoint(point);
    return true;
}

bool NetCDFBasicPointFeatureCursor::QueryNext(std::shared_ptr<ZorvoDSG::Feature> feature) {
    auto& point = s_FeatureAs<ZorvoDSG::PointFeature>(*feature);
    const bool bFilter = !bEmptyFilter();
    for (; m_position < m_count; ++m_position) {
        ReadPoint(point);
        // For a non-empty envelope, containing the point is the same test as not being disjoint
        // from the point's envelope, without building that envelope for every point.
        if (!bFilter || m_inEnvelope(point.wksPointZ())) {
            FinishPoint(point);
            return true;
        }
    }
    return false;
}

}  // namespace ZorvoNetCDFDSG
