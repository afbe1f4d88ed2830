#include <zorvodsg/cursor/detail/NetCDFBasicPointFeatureCursor.h>

#include <cmath>
#include <cstdint>
#include <limits>

namespace ZorvoNetCDFDSG {

using ZorvoDSG::SpaceTime::kMissing;

namespace {

// Object ids are 32-bit while they fit. Written in place: the OID is set for every feature.
void SetObjectId(uint64_t position, ZorvoDSG::System::NcVariant& oid) {
    if (position <= static_cast<uint64_t>(std::numeric_limits<int32_t>::max())) {
        oid.emplace<int32_t>(static_cast<int32_t>(position));
    } else {
        oid.emplace<int64_t>(static_cast<int64_t>(position));
    }
}

double MissingToNaN(double value, double missing) { return value == missing ? kMissing : value; }

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
    m_bPackedCoordinates = m_xVariable.IsPacked() || m_yVariable.IsPacked() ||
                           (m_pointClass->bHasTs() && m_tVariable.IsPacked()) ||
                           (m_pointClass->bHasZs() && m_zVariable.IsPacked());
    m_bUnpack = bAnyInstanceVariablePacked() || m_bPackedCoordinates;
}

std::shared_ptr<ZorvoDSG::Feature> NetCDFBasicPointFeatureCursor::CreateEmptyFeature() {
    return std::make_shared<ZorvoDSG::PointFeature>(m_instanceVariables);
}

void NetCDFBasicPointFeatureCursor::OnBlockSizeChanged() {
    m_x.SetBlockSize(m_blockSize);
    m_y.SetBlockSize(m_blockSize);
    if (m_z) {
        m_z->SetBlockSize(m_blockSize);
    }
    if (m_t) {
        m_t->SetBlockSize(m_blockSize);
    }
}

void NetCDFBasicPointFeatureCursor::ReadPoint(ZorvoDSG::PointFeature& feature) {
    ZorvoDSG::Host::WKSPointZ& point = feature.MutablePoint();
    point.x = MissingToNaN(m_x.Value(m_reader, m_position), m_missing.x);
    point.y = MissingToNaN(m_y.Value(m_reader, m_position), m_missing.y);
    if (m_z) {
        point.z = MissingToNaN(m_z->Value(m_reader, m_position), m_missing.z);
    }
    if (m_t) {
        feature.MutableTime() = MissingToNaN(m_t->Value(m_reader, m_position), m_missing.t);
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
    ReadInstanceValues(m_position, feature);
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
