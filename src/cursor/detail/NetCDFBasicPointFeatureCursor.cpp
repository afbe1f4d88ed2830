#include <zorvodsg/cursor/detail/NetCDFBasicPointFeatureCursor.h>

#include <cmath>
#include <cstdint>
#include <limits>

namespace ZorvoNetCDFDSG {

using ZorvoDSG::SpaceTime::kMissing;

namespace {

// Object ids are 32-bit while they fit.
ZorvoDSG::System::NcVariant ObjectId(uint64_t position) {
    if (position <= static_cast<uint64_t>(std::numeric_limits<int32_t>::max())) {
        return static_cast<int32_t>(position);
    }
    return static_cast<int64_t>(position);
}

double MissingToNaN(double value, double missing) { return value == missing ? kMissing : value; }

}  // namespace

NetCDFBasicPointFeatureCursor::NetCDFBasicPointFeatureCursor(
    std::shared_ptr<ZorvoDSG::BasicPointFeatureClass> pointClass, const ZorvoDSG::SpatialFilter& filter)
    : NetCDFCursorImpl(pointClass, filter, pointClass->idInstanceDim()),
      m_pointClass(std::move(pointClass)),
      m_count(m_pointClass->CFMetadata()->DimLen(m_pointClass->idInstanceDim())),
      m_x(*m_pointClass->CFMetadata(), m_xVariable, m_pointClass->idInstanceDim(), m_blockSize),
      m_y(*m_pointClass->CFMetadata(), m_yVariable, m_pointClass->idInstanceDim(), m_blockSize) {
    ZorvoDSG::ICFMetadata& dataset = *m_pointClass->CFMetadata();
    if (m_pointClass->bHasZs()) {
        m_z.emplace(dataset, m_zVariable, m_pointClass->idInstanceDim(), m_blockSize);
    }
    if (m_pointClass->bHasTs()) {
        m_t.emplace(dataset, m_tVariable, m_pointClass->idInstanceDim(), m_blockSize);
    }
    m_bUnpack = bAnyInstanceVariablePacked() || m_xVariable.IsPacked() || m_yVariable.IsPacked() ||
                (m_pointClass->bHasTs() && m_tVariable.IsPacked()) || (m_pointClass->bHasZs() && m_zVariable.IsPacked());
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
    if (!m_bUnpack) {
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
    feature.SetOID(ObjectId(m_position));
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
        if (!bFilter || !m_filter.Envelope().Disjoint(ZorvoDSG::Host::WKSEnvelopeZ(point.wksPointZ()))) {
            FinishPoint(point);
            return true;
        }
    }
    return false;
}

}  // namespace ZorvoNetCDFDSG
