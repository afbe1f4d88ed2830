#include <zorvodsg/cursor/detail/NetCDFCursorImpl.h>

#include <zorvodsg/cursor/Feature.h>
#include <zorvodsg/netcdf/ICFMetadata.h>

namespace ZorvoNetCDFDSG {

using ZorvoDSG::Variable;

NetCDFCursorImpl::NetCDFCursorImpl(std::shared_ptr<ZorvoDSG::IFeatureClass> featureClass,
                                   const ZorvoDSG::SpatialFilter& filter, long idInstanceDim)
    : m_featureClass(std::move(featureClass)),
      m_oidVariable(m_featureClass->OIDVar()),
      m_xVariable(m_featureClass->XVar()),
      m_yVariable(m_featureClass->YVar()),
      m_zVariable(Variable::s_EmptyVariable()),
      m_tVariable(Variable::s_EmptyVariable()),
      m_filter(filter),
      m_bEmptyFilter(m_filter.Envelope().IsEmpty()),
      m_reader(*m_featureClass->CFMetadata(), std::filesystem::path(m_featureClass->CFMetadata()->Uri())) {
    m_instanceVariables = s_SelectByName(m_filter.InstanceVariables(), m_featureClass->InstanceVariables());
    m_missing.x = ZorvoDSG::System::s_ToDouble(m_xVariable.FillValue());
    m_missing.y = ZorvoDSG::System::s_ToDouble(m_yVariable.FillValue());
    if (m_featureClass->bHasZs()) {
        m_zVariable = m_featureClass->ZVar();
        m_missing.z = ZorvoDSG::System::s_ToDouble(m_zVariable.FillValue());
    }
    if (m_featureClass->bHasTs()) {
        m_tVariable = m_featureClass->TVar();
        m_missing.t = ZorvoDSG::System::s_ToDouble(m_tVariable.FillValue());
    }
    ZorvoDSG::ICFMetadata& dataset = *m_featureClass->CFMetadata();
    m_instanceColumns.reserve(m_instanceVariables.size());
    for (const Variable& variable : m_instanceVariables) {
        m_instanceColumns.emplace_back(dataset, variable, idInstanceDim, m_blockSize);
    }
}

std::shared_ptr<ZorvoDSG::Feature> NetCDFCursorImpl::Next() {
    std::shared_ptr<ZorvoDSG::Feature> feature = CreateEmptyFeature();
    return QueryNext(feature) ? feature : nullptr;
}

bool NetCDFCursorImpl::QueryNext(std::shared_ptr<ZorvoDSG::Feature> feature) {
    if (bEmptyFilter()) {
        return BasicNext(feature);
    }
    while (BasicNext(feature)) {
        if (!m_filter.Envelope().Disjoint(feature->Extent())) {
            return true;
        }
    }
    return false;
}

void NetCDFCursorImpl::SetBlockSize(uint64_t blockSize) {
    m_blockSize = std::max<uint64_t>(blockSize, 1);
    for (detail::InstanceColumn& column : m_instanceColumns) {
        column.SetBlockSize(m_blockSize);
    }
    OnBlockSizeChanged();
}

void NetCDFCursorImpl::ReadInstanceValues(uint64_t index, ZorvoDSG::Feature& feature) {
    std::vector<ZorvoDSG::System::NcVariant>& values = feature.MutableInstanceValues();
    if (values.size() != m_instanceColumns.size()) {
        values.resize(m_instanceColumns.size());  // a feature made for another selection
    }
    ZorvoDSG::System::NcVariant* slot = values.data();
    for (detail::InstanceColumn& column : m_instanceColumns) {
        column.Read(m_reader, index, *slot++);
    }
}

void NetCDFCursorImpl::ReadLoadedInstanceValues(uint64_t index, ZorvoDSG::Feature& feature) {
    std::vector<ZorvoDSG::System::NcVariant>& values = feature.MutableInstanceValues();
    if (values.size() != m_instanceColumns.size()) {
        values.resize(m_instanceColumns.size());
    }
    ZorvoDSG::System::NcVariant* slot = values.data();
    for (const detail::InstanceColumn& column : m_instanceColumns) {
        column.ReadLoaded(index, *slot++);
    }
}

bool NetCDFCursorImpl::bAnyInstanceVariablePacked() const {
    for (const Variable& variable : m_instanceVariables) {
        if (variable.IsPacked()) {
            return true;
        }
    }
    return false;
}

bool NetCDFCursorImpl::s_bInstanceDimIsFirst(const Variable& variable, long dimId) {
    const std::vector<long> dims = variable.aidDims();
    return !dims.empty() && dims.front() == dimId;
}

}  // namespace ZorvoNetCDFDSG
