#include <zorvodsg/cursor/detail/RunSource.h>

#include <algorithm>

#include <zorvodsg/cursor/detail/TypedFill.h>
#include <zorvodsg/values/ResourceLimits.h>

namespace ZorvoNetCDFDSG::detail {

using ZorvoDSG::System::NcVariantArray;

RunSource::RunSource(eKind kind, ZorvoDSG::ICFMetadata& dataset, const ZorvoDSG::Variable& variable,
                     uint64_t blockValues)
    : m_kind(kind), m_variable(variable), m_window(dataset, variable, blockValues) {}

RunSource RunSource::Orthogonal(ZorvoDSG::ICFMetadata& dataset, const ZorvoDSG::Variable& variable,
                                long idInstanceDim, uint64_t blockValues) {
    const std::vector<long> dims = variable.aidDims();
    const auto axis = std::find(dims.begin(), dims.end(), idInstanceDim);
    if (idInstanceDim < 0 || axis == dims.end()) {
        return RunSource(eWhole, dataset, variable, blockValues);
    }
    if (axis == dims.begin()) {
        return RunSource(eRows, dataset, variable, blockValues);
    }
    RunSource source(eColumns, dataset, variable, blockValues);
    source.m_instanceAxis = static_cast<size_t>(axis - dims.begin());
    source.m_start.assign(dims.size(), 0);
    for (const long dim : dims) {
        source.m_count.push_back(static_cast<size_t>(dataset.DimLen(dim)));
    }
    source.m_cInstances = source.m_count[source.m_instanceAxis];
    source.m_fill = TypedFill(variable);  // worked out once, not per feature
    return source;
}

RunSource RunSource::Ragged(ZorvoDSG::ICFMetadata& dataset, const ZorvoDSG::Variable& variable,
                            std::shared_ptr<const RaggedIndex> index, uint64_t blockValues) {
    RunSource source(eRagged, dataset, variable, blockValues);
    source.m_index = std::move(index);
    return source;
}

uint64_t RunSource::cValuesPerRun() const {
    switch (m_kind) {
        case eRows: return m_window.ValuesPerElement();
        case eWhole: return m_window.cElements() * m_window.ValuesPerElement();
        case eColumns: return m_window.cElements() * m_window.ValuesPerElement() / std::max<uint64_t>(m_cInstances, 1);
        case eRagged: return m_index->cInstances() > 0 ? m_index->Count(0) : 0;
    }
    return 0;
}

void RunSource::SelectColumn(uint64_t instance) {
    m_start[m_instanceAxis] = static_cast<size_t>(instance);
    m_count[m_instanceAxis] = 1;
}

void RunSource::Read(NcSlabReader& reader, uint64_t instance, NcVariantArray& out) {
    switch (m_kind) {
        case eRows: m_window.Copy(reader, instance, 1, out); return;
        case eWhole: m_window.Copy(reader, 0, m_window.cElements(), out); return;
        case eRagged: m_window.Copy(reader, m_index->Offset(instance), m_index->Count(instance), out); return;
        case eColumns: break;
    }
    // Strided: one read per instance, straight into the feature's array.
    SelectColumn(instance);
    const long width = ObservationStringWidth(m_variable);
    ZorvoDSG::System::CheckResourceLimit(SlabElements(m_count), ZorvoDSG::System::kMaxValuesPerRead,
                                         [this] { return "values of " + m_variable.Name() + " for one feature"; }, reader.Path());
    const size_t cValues = SlabElements(m_count) / static_cast<size_t>(width);
    if (out.ElementType() != m_variable.Type() || out.StringWidth() != static_cast<size_t>(width)) {
        out = NcVariantArray(m_variable.Type(), m_fill, static_cast<long>(cValues), width);
    }
    out.SetReserved(static_cast<long>(cValues));
    out.ReInit(static_cast<long>(cValues), m_variable.Type(), m_fill);
    reader.Read(m_variable, m_start, m_count, out);
}

void RunSource::ReadDoubles(NcSlabReader& reader, uint64_t instance, std::vector<double>& out) {
    switch (m_kind) {
        case eRows: m_window.CopyDoubles(reader, instance, 1, out); return;
        case eWhole: m_window.CopyDoubles(reader, 0, m_window.cElements(), out); return;
        case eRagged: m_window.CopyDoubles(reader, m_index->Offset(instance), m_index->Count(instance), out); return;
        case eColumns: break;
    }
    SelectColumn(instance);
    ZorvoDSG::System::CheckResourceLimit(SlabElements(m_count), ZorvoDSG::System::kMaxValuesPerRead,
                                         [this] { return "values of " + m_variable.Name() + " for one feature"; }, reader.Path());
    out.resize(SlabElements(m_count));
    reader.ReadDoubles(m_variable, m_start, m_count, out.data());
}

}  // namespace ZorvoNetCDFDSG::detail
