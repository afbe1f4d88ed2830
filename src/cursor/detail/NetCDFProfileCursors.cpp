#include <zorvodsg/cursor/detail/NetCDFProfileCursors.h>

#include <cmath>
#include <limits>
#include <map>
#include <stdexcept>

#include <zorvodsg/host/Utf8.h>
#include <zorvodsg/values/Exception.h>
#include <zorvodsg/values/ResourceLimits.h>

namespace ZorvoNetCDFDSG {

using ZorvoDSG::ObservationVariable;
using ZorvoDSG::Variable;
using ZorvoDSG::SpaceTime::kMissing;

namespace {

// The instance's one time (or z) exists when its variable is a scalar or runs along the instances;
// a coordinate along the observations has no single value for the instance.
bool bInstanceLevel(const Variable& variable, long idInstanceDim) {
    const std::vector<long> dims = variable.aidDims();
    return dims.empty() || (idInstanceDim >= 0 && dims.front() == idInstanceDim);
}

long LayoutInstanceDim(const ZorvoDSG::BasicProfileFeatureClass& profileClass) {
    return profileClass.Layout() == ZorvoDSG::eLayoutSingleInstance ? -1 : profileClass.idInstanceDim();
}

}  // namespace

NetCDFProfileCursorImpl::NetCDFProfileCursorImpl(std::shared_ptr<ZorvoDSG::BasicProfileFeatureClass> profileClass,
                                                 const ZorvoDSG::SpatialFilter& filter)
    : NetCDFCursorImpl(profileClass, filter, LayoutInstanceDim(*profileClass)),
      m_profileClass(std::move(profileClass)),
      m_observationVariables(s_SelectByName(filter.ObservationVariables(), m_profileClass->ObservationVariables())),
      m_bValuesAreZ(m_profileClass->FeatureType() == ZorvoDSG::eFeatureProfile),
      m_oid(*m_profileClass->CFMetadata(), m_oidVariable, LayoutInstanceDim(*m_profileClass), m_blockSize),
      m_x(*m_profileClass->CFMetadata(), m_xVariable, LayoutInstanceDim(*m_profileClass), m_blockSize),
      m_y(*m_profileClass->CFMetadata(), m_yVariable, LayoutInstanceDim(*m_profileClass), m_blockSize) {
    const long idInstanceDim = LayoutInstanceDim(*m_profileClass);
    const bool bHasOther = m_bValuesAreZ ? m_profileClass->bHasTs() : m_profileClass->bHasZs();
    const Variable& other = m_bValuesAreZ ? m_tVariable : m_zVariable;
    if (bHasOther && bInstanceLevel(other, idInstanceDim)) {
        m_tOrZ.emplace(*m_profileClass->CFMetadata(), other, idInstanceDim, m_blockSize);
    }
    m_bUnpack = bAnyInstanceVariablePacked() || m_xVariable.IsPacked() || m_yVariable.IsPacked() ||
                (m_profileClass->bHasZs() && m_zVariable.IsPacked()) ||
                (m_profileClass->bHasTs() && m_tVariable.IsPacked());
    for (const ObservationVariable& variable : m_observationVariables) {
        m_bUnpack = m_bUnpack || variable.IsPacked();
    }
}

void NetCDFProfileCursorImpl::OnBlockSizeChanged() {
    m_oid.SetBlockSize(m_blockSize);
    m_x.SetBlockSize(m_blockSize);
    m_y.SetBlockSize(m_blockSize);
    if (m_tOrZ) {
        m_tOrZ->SetBlockSize(m_blockSize);
    }
    if (m_values) {
        m_values->SetBlockValues(m_blockSize);
    }
    for (detail::RunSource& source : m_observations) {
        source.SetBlockValues(m_blockSize);
    }
}

void NetCDFProfileCursorImpl::ReadGeometry(ZorvoDSG::ProfileFeature& feature) {
    m_values->ReadDoubles(m_reader, m_position, m_buffer);
    if (m_buffer.size() > static_cast<size_t>(std::numeric_limits<int32_t>::max())) {
        throw ZorvoDSG::Exception(ZorvoDSG::eInternalError, L"profile longer than 2147483647 values", m_reader.Path());
    }
    ZorvoDSG::System::CheckResourceLimit(m_buffer.size(), ZorvoDSG::System::kMaxObservationsPerFeature,
                                         [this] { return "observations of profile " + std::to_string(m_position); }, m_reader.Path());
    const auto n = static_cast<long>(m_buffer.size());
    feature.SetReserved(n);
    ZorvoDSG::SpaceTime::WKSProfile& profile = feature.wksProfile();
    profile.x = m_x.Value(m_reader, m_position);
    profile.y = m_y.Value(m_reader, m_position);
    std::copy(m_buffer.begin(), m_buffer.end(), profile.Values());
    profile.count = static_cast<int32_t>(n);
    ZorvoDSG::SpaceTime::WKSPointXYZT missing = m_missing;
    if (!m_bValuesAreZ) {
        std::swap(missing.z, missing.t);
    }
    profile.ConvertMissingToNaN(missing);
}

void NetCDFProfileCursorImpl::ReadTOrZ(ZorvoDSG::ProfileFeature& feature) {
    double& tOrZ = feature.MutableT_or_Z();
    if (!m_tOrZ) {
        tOrZ = kMissing;
        return;
    }
    tOrZ = m_tOrZ->Value(m_reader, m_position);
    if (tOrZ == (m_bValuesAreZ ? m_missing.t : m_missing.z)) {
        tOrZ = kMissing;
    }
}

bool NetCDFProfileCursorImpl::BasicNext(std::shared_ptr<ZorvoDSG::Feature> feature) {
    if (m_position >= m_count) {
        return false;
    }
    auto& profile = s_FeatureAs<ZorvoDSG::ProfileFeature>(*feature);
    profile.SetOID(m_oid.Value(m_reader, m_position));
    profile.SetInstanceID(m_position);
    ReadGeometry(profile);
    ReadTOrZ(profile);
    ReadInstanceValues(m_position, profile);
    for (size_t i = 0; i < m_observations.size(); ++i) {
        m_observations[i].Read(m_reader, m_position, profile.ObservationValues(static_cast<long>(i)));
    }
    CheckUnpack(profile);
    ++m_position;
    return true;
}

void NetCDFProfileCursorImpl::CheckUnpack(ZorvoDSG::ProfileFeature& feature) {
    if (!m_bUnpack) {
        return;
    }
    ZorvoDSG::SpaceTime::WKSProfile& profile = feature.wksProfile();
    const Variable& values = ValueVariable();
    const bool bValuesPacked = !values.bEmpty() && values.IsPacked();
    if (profile.count != 0 && (m_xVariable.IsPacked() || m_yVariable.IsPacked() || bValuesPacked)) {
        ZorvoDSG::SpaceTime::UnpackInfo info;
        if (m_xVariable.IsPacked()) {
            info.flags |= ZorvoDSG::SpaceTime::UnpackInfo::eX;
            std::tie(info.xScale, info.xOffset) = m_xVariable.UnpackInfo();
        }
        if (m_yVariable.IsPacked()) {
            info.flags |= ZorvoDSG::SpaceTime::UnpackInfo::eY;
            std::tie(info.yScale, info.yOffset) = m_yVariable.UnpackInfo();
        }
        if (bValuesPacked) {
            info.flags |= ZorvoDSG::SpaceTime::UnpackInfo::eZ;
            std::tie(info.zScale, info.zOffset) = values.UnpackInfo();
        }
        profile.Unpack(info);
    }
    const Variable& other = m_bValuesAreZ ? m_tVariable : m_zVariable;
    if (!std::isnan(feature.T_or_Z()) && !other.bEmpty() && other.IsPacked()) {
        feature.MutableT_or_Z() = other.Unpack(feature.T_or_Z());
    }
    for (size_t i = 0; i < m_observationVariables.size(); ++i) {
        const ObservationVariable& variable = m_observationVariables[i];
        if (!variable.IsPacked()) {
            continue;
        }
        try {
            variable.Unpack(feature.ObservationValues(static_cast<long>(i)));
        } catch (const char* what) {
            throw std::runtime_error(what);  // text and character data cannot be unpacked
        }
    }
}

NetCDFOrthoMDProfileCursor::NetCDFOrthoMDProfileCursor(
    std::shared_ptr<ZorvoDSG::BasicProfileFeatureClass> profileClass, const ZorvoDSG::SpatialFilter& filter)
    : NetCDFProfileCursorImpl(std::move(profileClass), filter) {
    ZorvoDSG::ICFMetadata& dataset = *m_profileClass->CFMetadata();
    const long idInstanceDim = LayoutInstanceDim(*m_profileClass);
    m_count = m_profileClass->cFeatures();
    m_values.emplace(detail::RunSource::Orthogonal(dataset, ValueVariable(), idInstanceDim, m_blockSize));
    m_valuesPerProfile = m_values->cValuesPerRun();
    for (const ObservationVariable& variable : m_observationVariables) {
        m_observations.push_back(detail::RunSource::Orthogonal(dataset, variable, idInstanceDim, m_blockSize));
    }
}

std::shared_ptr<ZorvoDSG::Feature> NetCDFOrthoMDProfileCursor::CreateEmptyFeature() {
    return std::make_shared<ZorvoDSG::ProfileFeature>(static_cast<long>(m_valuesPerProfile), m_instanceVariables,
                                                      m_observationVariables);
}

NetCDFBasicProfileFeatureCursor::NetCDFBasicProfileFeatureCursor(
    std::shared_ptr<ZorvoDSG::BasicProfileFeatureClass> profileClass, const ZorvoDSG::SpatialFilter& filter)
    : NetCDFProfileCursorImpl(std::move(profileClass), filter) {
    ZorvoDSG::ICFMetadata& dataset = *m_profileClass->CFMetadata();
    // One index per row-count variable, shared by the variables it counts.
    std::map<long, std::shared_ptr<const detail::RaggedIndex>> indexes;
    const auto indexOf = [&](long idRowCountVar) {
        auto& index = indexes[idRowCountVar];
        if (!index) {
            const Variable& rowSizes = dataset.GetVariable(idRowCountVar);
            const long idSampleDim = dataset.Name2Dim().at(std::get<std::string>(rowSizes.AttributeValue("sample_dimension")));
            index = std::make_shared<detail::RaggedIndex>(m_reader, dataset, rowSizes, idSampleDim, m_blockSize);
        }
        return index;
    };
    const auto classIndex = indexOf(m_profileClass->idRowSizeVar());
    m_count = classIndex->cInstances();
    m_values.emplace(detail::RunSource::Ragged(dataset, ValueVariable(), classIndex, m_blockSize));
    for (const ObservationVariable& variable : m_observationVariables) {
        m_observations.push_back(detail::RunSource::Ragged(dataset, variable, indexOf(variable.idRowCountVar()), m_blockSize));
    }
}

std::shared_ptr<ZorvoDSG::Feature> NetCDFBasicProfileFeatureCursor::CreateEmptyFeature() {
    return std::make_shared<ZorvoDSG::ProfileFeature>(100, m_instanceVariables, m_observationVariables);
}

}  // namespace ZorvoNetCDFDSG
