#include <zorvodsg/cursor/detail/SlabShape.h>

#include <netcdf.h>

#include <zorvodsg/values/ResourceLimits.h>

namespace ZorvoNetCDFDSG::detail {

SlabShape::SlabShape(ZorvoDSG::ICFMetadata& dataset, const ZorvoDSG::Variable& variable, long idInstanceDim) {
    const std::vector<long> dims = variable.aidDims();
    m_start.assign(dims.size(), 0);
    m_count.assign(dims.size(), 1);
    size_t cIndexAxes = dims.size();
    // A character variable classified as text keeps its last axis whole: the characters of a string.
    if (variable.Type() == NC_CHAR && variable.cStringChars() > 0 && !dims.empty() &&
        variable.cStringChars() == dataset.DimLen(dims.back())) {
        cIndexAxes = dims.size() - 1;
        ZorvoDSG::System::CheckResourceLimit(static_cast<uint64_t>(variable.cStringChars()),
                                             ZorvoDSG::System::kMaxStringWidth,
                                             "string width of " + variable.Name(), dataset.NcPath());
        m_stringWidth = static_cast<size_t>(variable.cStringChars());
        m_count.back() = m_stringWidth;
    }
    for (size_t i = 0; i < cIndexAxes; ++i) {
        if (idInstanceDim >= 0 && dims[i] == idInstanceDim) {
            m_axis = static_cast<int>(i);
            m_cInstances = dataset.DimLen(idInstanceDim);
            break;
        }
    }
}

void SlabShape::Select(uint64_t first, uint64_t n) {
    if (m_axis >= 0) {
        m_start[static_cast<size_t>(m_axis)] = static_cast<size_t>(first);
        m_count[static_cast<size_t>(m_axis)] = static_cast<size_t>(n);
    }
}

}  // namespace ZorvoNetCDFDSG::detail
