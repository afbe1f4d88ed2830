#include <zorvodsg/cursor/detail/OrthoRun.h>

#include <algorithm>

#include <zorvodsg/cursor/detail/TypedFill.h>

namespace ZorvoNetCDFDSG::detail {

using ZorvoDSG::System::NcVariantArray;

OrthoRun::OrthoRun(ZorvoDSG::ICFMetadata& dataset, const ZorvoDSG::Variable& variable, eShape shape,
                   uint64_t cVertices, uint64_t blockValues)
    : m_shape(shape),
      m_cVertices(cVertices),
      m_variable(variable),
      m_window(dataset, variable, blockValues) {
    if (m_shape == eColumns) {
        const std::vector<long> dims = variable.aidDims();
        m_start.assign(dims.size(), 0);
        m_count.assign(dims.size(), 1);
        m_count[0] = static_cast<size_t>(cVertices);
        if (dims.size() > 2) {
            m_count[2] = static_cast<size_t>(dataset.DimLen(dims[2]));  // a string axis, whole
        }
    }
}

void OrthoRun::SelectColumn(uint64_t instance) { m_start[1] = static_cast<size_t>(instance); }

void OrthoRun::Copy(NcSlabReader& reader, uint64_t instance, NcVariantArray& out) {
    switch (m_shape) {
        case eRows:
            m_window.Copy(reader, instance, 1, out);
            return;
        case eWhole:
            m_window.Copy(reader, 0, m_cVertices, out);
            return;
        case eColumns:
            break;
    }
    const auto cValues = static_cast<long>(m_cVertices);
    const long width = ObservationStringWidth(m_variable);
    const int type = m_variable.Type();
    if (out.ElementType() != type || out.StringWidth() != static_cast<size_t>(width)) {
        // Unpacking re-typed the array (or it was made for another shape): start afresh.
        out = NcVariantArray(type, TypedFill(m_variable), std::max(static_cast<long>(out.Reserved()), cValues), width);
    }
    out.SetReserved(cValues);
    out.ReInit(cValues, type, TypedFill(m_variable));
    SelectColumn(instance);
    reader.Read(m_variable, m_start, m_count, out);
}

void OrthoRun::CopyDoubles(NcSlabReader& reader, uint64_t instance, std::vector<double>& out) {
    switch (m_shape) {
        case eRows:
            m_window.CopyDoubles(reader, instance, 1, out);
            return;
        case eWhole:
            m_window.CopyDoubles(reader, 0, m_cVertices, out);
            return;
        case eColumns:
            break;
    }
    out.resize(static_cast<size_t>(m_cVertices));
    SelectColumn(instance);
    reader.ReadDoubles(m_variable, m_start, m_count, out.data());
}

}  // namespace ZorvoNetCDFDSG::detail
