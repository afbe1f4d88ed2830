#include <zorvodsg/cursor/detail/NcSlabReader.h>

#include <netcdf.h>

#include <stdexcept>
#include <string>

#include <zorvodsg/host/Utf8.h>
#include <zorvodsg/values/Exception.h>
#include <zorvodsg/values/NcLock.h>

namespace ZorvoNetCDFDSG {

using ZorvoDSG::Exception;
using ZorvoDSG::System::NcVariantArray;

size_t SlabElements(std::span<const size_t> count) {
    size_t elements = 1;
    for (const size_t n : count) {
        if (n != 0 && elements > SIZE_MAX / n) {
            throw std::bad_alloc();
        }
        elements *= n;
    }
    return elements;
}

int NcSlabReader::NcID() const {
    try {
        return m_dataset->NcID();
    } catch (const std::runtime_error&) {
        throw Exception(NC_EBADID, L"the file is closed: no workspace connection is active", m_path);
    }
}

void NcSlabReader::Check(int status, const ZorvoDSG::Variable& variable) const {
    if (status != NC_NOERR) {
        throw Exception(status, ZorvoDSG::Host::Utf8ToWide(variable.Name()), m_path);
    }
}

void NcSlabReader::Read(const ZorvoDSG::Variable& variable, std::span<const size_t> start,
                        std::span<const size_t> count, NcVariantArray& values) {
    const int type = variable.Type();
    // NC_CHAR elements are fixed-width runs of characters: the slab's characters are width * elements.
    const size_t cValues = SlabElements(count);
    const size_t width = type == NC_CHAR && values.StringWidth() > 0 ? values.StringWidth() : 1;
    const size_t cElements = cValues / width;
    const bool bFits = cElements * width == cValues && cElements <= values.Reserved() &&
                       values.ElementType() == type;
    if (!bFits || start.size() != count.size() || type == NC_USHORT) {
        throw Exception(ZorvoDSG::eInternalError, L"NcSlabReader::Read", m_path);
    }
    const ZorvoDSG::System::NcLock lock;
    if (type == NC_STRING) {
        ReadStrings(variable, start, count, cElements, values);
    } else if (cElements > 0) {
        Check(nc_get_vara(NcID(), static_cast<int>(variable.Id()), start.data(), count.data(), values.Data<void>()),
              variable);
    }
    values.SetSize(static_cast<long>(cElements));
}

void NcSlabReader::ReadStrings(const ZorvoDSG::Variable& variable, std::span<const size_t> start,
                               std::span<const size_t> count, size_t cElements, NcVariantArray& values) {
    m_strings.assign(cElements, nullptr);
    if (cElements == 0) {
        return;
    }
    Check(nc_get_vara_string(NcID(), static_cast<int>(variable.Id()), start.data(), count.data(), m_strings.data()),
          variable);
    // The library's strings are released whatever happens while they are copied.
    struct Release {
        std::vector<char*>& strings;
        ~Release() { nc_free_string(strings.size(), strings.data()); }
    } release{m_strings};
    std::string* target = values.Data<std::string>();
    for (size_t i = 0; i < cElements; ++i) {
        target[i] = m_strings[i] != nullptr ? m_strings[i] : "";
    }
}

void NcSlabReader::ReadDoubles(const ZorvoDSG::Variable& variable, std::span<const size_t> start,
                               std::span<const size_t> count, double* out) {
    if (start.size() != count.size()) {
        throw Exception(ZorvoDSG::eInternalError, L"NcSlabReader::ReadDoubles", m_path);
    }
    if (SlabElements(count) == 0) {
        return;
    }
    const ZorvoDSG::System::NcLock lock;
    Check(nc_get_vara_double(NcID(), static_cast<int>(variable.Id()), start.data(), count.data(), out), variable);
}

}  // namespace ZorvoNetCDFDSG
