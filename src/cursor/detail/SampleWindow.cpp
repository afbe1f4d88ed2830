#include <zorvodsg/cursor/detail/SampleWindow.h>

#include <netcdf.h>

#include <algorithm>
#include <cstring>
#include <string>

#include <zorvodsg/cursor/detail/TypedFill.h>
#include <zorvodsg/host/Utf8.h>
#include <zorvodsg/values/Exception.h>
#include <zorvodsg/values/ResourceLimits.h>
#include <zorvodsg/values/NcTypeDispatch.h>

namespace ZorvoNetCDFDSG::detail {

using ZorvoDSG::System::NcTypeTag;
using ZorvoDSG::System::NcVariantArray;

long ObservationStringWidth(const ZorvoDSG::Variable& variable) {
    if (variable.Type() != NC_CHAR || variable.aidDims().size() < 2) {
        return 1;
    }
    return std::max<long>(static_cast<long>(variable.cStringChars()), 1);
}

namespace {

// An array cannot be made for a type without storage (NC_USHORT); reading such a variable fails
// when the cursor first reads it.
int StorageType(int type) {
    const bool bStored = ZorvoDSG::System::VisitNcType(
        type, []<typename T>(NcTypeTag<T>) { return true; }, [] { return false; });
    return bStored ? type : NC_DOUBLE;
}

// Copies `n` slots from slot `first` of `from` into `to`, which has room for them.
void CopySlots(const NcVariantArray& from, uint64_t first, uint64_t n, NcVariantArray& to) {
    ZorvoDSG::System::VisitNcType(
        from.ElementType(),
        [&]<typename T>(NcTypeTag<T>) {
            if constexpr (std::is_same_v<T, std::string>) {
                std::copy_n(from.Data<std::string>() + first, n, to.Data<std::string>());
            } else if constexpr (std::is_same_v<T, ZorvoDSG::System::NcCharSlot>) {
                const auto width = static_cast<size_t>(from.StringWidth());
                std::memcpy(to.Data<char>(), from.Data<char>() + first * width, n * width);
            } else {
                std::memcpy(to.Data<T>(), from.Data<T>() + first, n * sizeof(T));
            }
        },
        [] {});
}

}  // namespace

SampleWindow::SampleWindow(ZorvoDSG::ICFMetadata& dataset, const ZorvoDSG::Variable& variable, uint64_t blockValues)
    : m_variable(variable),
      m_fill(TypedFill(variable)),
      m_stringWidth(ObservationStringWidth(variable)),
      m_blockValues(std::max<uint64_t>(blockValues, 1)),
      m_values(StorageType(variable.Type()), m_fill, 0, m_stringWidth) {
    const std::vector<long> dims = variable.aidDims();
    if (dims.empty()) {
        m_cElements = 1;  // a scalar: one element of one value
        return;
    }
    m_start.assign(dims.size(), 0);
    m_count.resize(dims.size());
    for (size_t i = 0; i < dims.size(); ++i) {
        m_count[i] = static_cast<size_t>(dataset.DimLen(dims[i]));
    }
    m_cElements = m_count.front();
    ZorvoDSG::System::CheckResourceLimit(static_cast<uint64_t>(m_stringWidth), ZorvoDSG::System::kMaxStringWidth,
                                         "string width of " + variable.Name(), dataset.NcPath());
    const size_t cValueAxes = m_stringWidth > 1 ? dims.size() - 1 : dims.size();
    for (size_t i = 1; i < cValueAxes; ++i) {
        m_valuesPerElement = ZorvoDSG::System::LimitedProduct(
            m_valuesPerElement, m_count[i], ZorvoDSG::System::kMaxValuesPerRead / static_cast<uint64_t>(m_stringWidth),
            "values per observation of " + variable.Name(), dataset.NcPath());
    }
}

void SampleWindow::SetBlockValues(uint64_t blockValues) {
    m_blockValues = std::max<uint64_t>(blockValues, 1);
    m_loaded = 0;
}

void SampleWindow::Select(uint64_t first, uint64_t n) {
    if (!m_start.empty()) {
        m_start.front() = static_cast<size_t>(first);
        m_count.front() = static_cast<size_t>(n);
    }
}

void SampleWindow::Cover(NcSlabReader& reader, uint64_t first, uint64_t n, bool bDoubles) {
    if (first > m_cElements || n > m_cElements - first) {
        throw ZorvoDSG::Exception(NC_EINVALCOORDS, ZorvoDSG::Host::Utf8ToWide(m_variable.Name()), reader.Path());
    }
    if (bDoubles == m_bDoublesLoaded && first >= m_first && first + n <= m_first + m_loaded && m_loaded > 0) {
        return;
    }
    if (m_variable.Type() != m_values.ElementType()) {
        throw ZorvoDSG::Exception(ZorvoDSG::eInternalError, L"NetCDFCursorImpl::GetInstanceVar1", reader.Path());
    }
    // At least a block of values, whole elements, never past the end of the axis.
    const uint64_t perBlock = std::max<uint64_t>(m_blockValues / std::max<uint64_t>(m_valuesPerElement, 1), 1);
    const uint64_t count = std::min(std::max(n, perBlock), m_cElements - first);
    Select(first, count);
    const uint64_t cValues = LimitedValues(count, reader.Path());
    if (bDoubles) {
        m_doubles.resize(static_cast<size_t>(cValues) * static_cast<size_t>(m_stringWidth));
        reader.ReadDoubles(m_variable, m_start, m_count, m_doubles.data());
    } else {
        m_values.SetReserved(static_cast<long>(cValues));
        reader.Read(m_variable, m_start, m_count, m_values);
    }
    m_first = first;
    m_loaded = count;
    m_bDoublesLoaded = bDoubles;
}

uint64_t SampleWindow::LimitedValues(uint64_t n, const std::filesystem::path& path) const {
    const auto width = static_cast<uint64_t>(m_stringWidth);
    return ZorvoDSG::System::LimitedProduct(n, m_valuesPerElement * width, ZorvoDSG::System::kMaxValuesPerRead,
                                            [this] { return "values of " + m_variable.Name() + " read at once"; }, path) /
           width;
}

void SampleWindow::Copy(NcSlabReader& reader, uint64_t first, uint64_t n, NcVariantArray& out) {
    const uint64_t cValues = LimitedValues(n, reader.Path());
    const auto cReserve = static_cast<long>(std::max<uint64_t>(out.Reserved(), cValues));
    // An array unpacked to a wider type than the variable's is re-typed in place by ReInit, keeping
    // its storage; one of a narrower type or another string width is made afresh.
    if (out.ElementType() < m_values.ElementType() || out.StringWidth() != static_cast<size_t>(m_stringWidth)) {
        out = NcVariantArray(m_values.ElementType(), m_fill, cReserve, m_stringWidth);
    }
    out.SetReserved(cReserve);
    out.ReInit(static_cast<long>(cValues), m_values.ElementType(), m_fill);
    if (cValues == 0) {
        return;
    }
    Cover(reader, first, n, false);
    CopySlots(m_values, (first - m_first) * m_valuesPerElement, cValues, out);
}

void SampleWindow::CopyDoubles(NcSlabReader& reader, uint64_t first, uint64_t n, std::vector<double>& out) {
    const uint64_t cValues = LimitedValues(n, reader.Path());
    out.resize(static_cast<size_t>(cValues));
    if (cValues == 0) {
        return;
    }
    Cover(reader, first, n, true);
    std::copy_n(m_doubles.begin() + static_cast<long>((first - m_first) * m_valuesPerElement), cValues, out.begin());
}

}  // namespace ZorvoNetCDFDSG::detail
