#include <zorvodsg/netcdf/detail/NcAttribute.h>

#include <netcdf.h>

#include <cstring>
#include <limits>
#include <memory>
#include <new>
#include <stdexcept>
#include <vector>

#include <zorvodsg/host/Utf8.h>
#include <zorvodsg/values/NcTypeDispatch.h>
#include <zorvodsg/values/Exception.h>
#include <zorvodsg/values/NcLock.h>

using ZorvoDSG::Host::Utf8ToWide;

namespace ZorvoNetCDFDSG::detail {

namespace {

using ZorvoDSG::System::NcVariant;
using ZorvoDSG::System::NcVariantArray;

// Far above any real attribute; keeps a corrupt length from reaching the allocator.
constexpr size_t kMaxAttributeBytes = size_t{1} << 31;

struct AttributeRead {
    int groupId;
    int varId;
    const char* name;
    const std::string& owner;
    const std::filesystem::path& path;

    [[noreturn]] void Fail(int status) const {
        throw ZorvoDSG::Exception(status, Utf8ToWide("attribute " + owner + ":" + name), path);
    }
    void Check(int status) const {
        if (status != NC_NOERR) {
            Fail(status);
        }
    }
    void CheckLength(size_t length, size_t elementBytes) const {
        if (length > kMaxAttributeBytes / elementBytes) {
            Fail(NC_ENOMEM);
        }
    }
};

// nc_get_att_string's strings, released with nc_free_string whatever happens.
class NcStrings {
public:
    explicit NcStrings(size_t count) : m_values(count, nullptr) {}
    ~NcStrings() { nc_free_string(m_values.size(), m_values.data()); }
    NcStrings(const NcStrings&) = delete;
    NcStrings& operator=(const NcStrings&) = delete;
    char** Data() { return m_values.data(); }
    const std::vector<char*>& Values() const { return m_values; }

private:
    std::vector<char*> m_values;
};

NcVariant ReadNumeric(const AttributeRead& read, nc_type type, size_t length) {
    NcVariant result;
    ZorvoDSG::System::VisitNcNumericType(type, [&](auto zero) {
        using T = decltype(zero);
        if (length == 1) {
            T value = zero;
            read.Check(nc_get_att(read.groupId, read.varId, read.name, &value));
            result = value;
            return;
        }
        read.CheckLength(length, sizeof(T));
        NcVariantArray values(type, NcVariant{}, static_cast<long>(length), 1);
        values.SetSize(static_cast<long>(length));
        if (length > 0) {
            read.Check(nc_get_att(read.groupId, read.varId, read.name, values.Data<void>()));
        }
        result = std::move(values);
    });
    return result;
}

NcVariant ReadText(const AttributeRead& read, size_t length) {
    read.CheckLength(length, 1);
    std::string text(length, '\0');
    if (length > 0) {
        read.Check(nc_get_att_text(read.groupId, read.varId, read.name, text.data()));
    }
    text.resize(std::strlen(text.c_str()));
    return text;
}

NcVariant ReadStrings(const AttributeRead& read, size_t length) {
    read.CheckLength(length, sizeof(char*));
    NcStrings values(length);
    if (length > 0) {
        read.Check(nc_get_att_string(read.groupId, read.varId, read.name, values.Data()));
    }
    std::string text;
    for (const char* value : values.Values()) {
        if (value != nullptr) {
            text += value;
        }
        text += '\n';
    }
    return text;
}

}  // namespace

NcVariant ReadNcAttribute(int groupId, int varId, const char* name, const std::string& owner,
                          const std::filesystem::path& path) {
    const ZorvoDSG::System::NcLock lock;
    const AttributeRead read{groupId, varId, name, owner, path};
    nc_type type = NC_NAT;
    size_t length = 0;
    read.Check(nc_inq_att(groupId, varId, name, &type, &length));
    try {
        switch (type) {
            case NC_CHAR: return ReadText(read, length);
            case NC_STRING: return ReadStrings(read, length);
            case NC_USHORT: break;
            default:
                if (NcVariant value = ReadNumeric(read, type, length); value.index() != 0) {
                    return value;
                }
                break;
        }
    } catch (const std::bad_alloc&) {
        read.Fail(NC_ENOMEM);
    }
    throw std::runtime_error("unimplemented attribute value type");
}

}  // namespace ZorvoNetCDFDSG::detail
