#include <zorvodsg/netcdf/Variable.h>

#include <netcdf.h>

#include <algorithm>
#include <stdexcept>
#include <type_traits>
#include <variant>

#include <zorvodsg/host/Utf8.h>
#include <zorvodsg/netcdf/ICFMetadata.h>
#include <zorvodsg/netcdf/detail/NcAttribute.h>
#include <zorvodsg/values/NcTypeDispatch.h>
#include <zorvodsg/values/Exception.h>
#include <zorvodsg/values/NcLock.h>
#include <zorvodsg/values/detail/Rescale.h>

using ZorvoDSG::Host::Utf8ToWide;

namespace ZorvoDSG {

using System::NcVariant;

namespace {

constexpr const char* kScaleFactor = "scale_factor";
constexpr const char* kAddOffset = "add_offset";
constexpr const char* kFillValue = "_FillValue";
// Not a fill value here (that is _FillValue's alone), but amending it re-reads packing and fill.
constexpr const char* kMissingValue = "missing_value";

// The netCDF type of an attribute value as the file would store it (text as NC_CHAR).
int NcTypeOfValue(const NcVariant& value) {
    switch (value.index()) {
        case System::eNcUByte: return NC_UBYTE;
        case System::eNcByte: return NC_BYTE;
        case System::eNcShort: return NC_SHORT;
        case System::eNcInt: return NC_INT;
        case System::eNcUInt: return NC_UINT;
        case System::eNcInt64: return NC_INT64;
        case System::eNcUInt64: return NC_UINT64;
        case System::eNcFloat: return NC_FLOAT;
        case System::eNcDouble: return NC_DOUBLE;
        case System::eNcString: return NC_CHAR;
        case System::eNcArray: return std::get<System::NcVariantArray>(value).ElementType();
        default: return NC_NAT;
    }
}

[[noreturn]] void ThrowInvalidType() { throw std::runtime_error("invalid type for variable"); }
[[noreturn]] void ThrowInvalidUnpackedType() { throw std::runtime_error("invalid unpacked type for variable"); }

std::filesystem::path PathOf(const ICFMetadata* file) { return file != nullptr ? file->NcPath() : std::filesystem::path(); }

bool IsWhiteSpace(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\v' || c == '\f'; }

// The library's default fill value of a numeric type: what nc_inq_var_fill reports for a variable
// whose file declares none (the NC_FILL_* constants).
template <typename T>
T DefaultFill();
template <> signed char DefaultFill() { return NC_FILL_BYTE; }
template <> unsigned char DefaultFill() { return NC_FILL_UBYTE; }
template <> short DefaultFill() { return NC_FILL_SHORT; }
template <> int32_t DefaultFill() { return NC_FILL_INT; }
template <> uint32_t DefaultFill() { return NC_FILL_UINT; }
template <> int64_t DefaultFill() { return NC_FILL_INT64; }
template <> uint64_t DefaultFill() { return NC_FILL_UINT64; }
template <> float DefaultFill() { return NC_FILL_FLOAT; }
template <> double DefaultFill() { return NC_FILL_DOUBLE; }

}  // namespace

Variable::Variable(ICFMetadata* file, const std::string& fullGroupName, long id, const std::string& name)
    : m_name(name), m_fullGroupName(fullGroupName), m_file(file != nullptr ? file->m_self : nullptr), m_id(id),
      m_type(id == kFakeOIDId ? NC_INT : 0) {}

Variable::Variable(ICFMetadata* file, const std::string& fullGroupName, long groupId, long varId)
    : m_fullGroupName(fullGroupName), m_file(file != nullptr ? file->m_self : nullptr), m_id(varId) {
    const System::NcLock lock;
    const int gid = static_cast<int>(groupId);
    const int vid = static_cast<int>(varId);
    char name[NC_MAX_NAME + 1] = {};
    if (nc_inq_varname(gid, vid, name) != NC_NOERR) {
        throw std::runtime_error("variable not found");
    }
    m_name = name;
    const auto check = [&](int status) {
        if (status != NC_NOERR) {
            throw Exception(status, Utf8ToWide("variable " + m_name), PathOf(file));
        }
    };
    nc_type type = NC_NAT;
    int cDimsInFile = 0;
    check(nc_inq_vartype(gid, vid, &type));
    check(nc_inq_varndims(gid, vid, &cDimsInFile));
    if (cDimsInFile < 0 || cDimsInFile > NC_MAX_VAR_DIMS) {
        check(NC_EMAXDIMS);
    }
    std::vector<int> dimIds(static_cast<size_t>(cDimsInFile));
    check(nc_inq_vardimid(gid, vid, dimIds.data()));
    m_type = type;
    m_cDims = cDimsInFile;
    for (const int dimId : dimIds) {
        char dimName[NC_MAX_NAME + 1] = {};
        check(nc_inq_dimname(gid, dimId, dimName));
        m_dimIds.push_back(dimId);
        m_dimNames.emplace_back(dimName);
    }
    LoadAttributes(gid);
    DeterminePacking();
    ClassifyString();
    DetermineFillValue();
}

Variable Variable::s_EmptyVariable() { return Variable(nullptr, std::string(), kEmptyId, std::string()); }

Variable Variable::s_FakeOIDVariable() { return Variable(nullptr, std::string(), kFakeOIDId, "OID"); }

long Variable::FileId() const {
    const ICFMetadata* file = CFMetadata();
    if (file == nullptr) {
        throw std::runtime_error("variable without file");
    }
    return file->FileId();
}

void Variable::SetName(const std::string& name, const std::string& fullGroupName) {
    m_name = name;
    m_fullGroupName = fullGroupName;
}

int Variable::Type() const {
    if (m_type == 0) {
        ThrowInvalidType();
    }
    return m_type;
}

int Variable::UnpackedType() const {
    if (!m_bPacked) {
        return m_type;
    }
    if (m_unpackedType == 0) {
        ThrowInvalidUnpackedType();
    }
    return m_unpackedType;
}

int Variable::cDims() const {
    if (m_cDims == -1) {
        throw std::runtime_error("invalid dimensions for variable");
    }
    return m_cDims;
}

bool Variable::HasDim(long dimId) const { return std::find(m_dimIds.begin(), m_dimIds.end(), dimId) != m_dimIds.end(); }

// ---- attributes ----

void Variable::LoadAttributes(int groupId) {
    const int varId = m_id == kGlobalsId ? NC_GLOBAL : static_cast<int>(m_id);
    const std::filesystem::path path = PathOf(CFMetadata());
    const System::NcLock lock;
    int gid = groupId;
    for (;;) {
        int cAttributes = 0;
        if (nc_inq_varnatts(gid, varId, &cAttributes) != NC_NOERR) {
            throw std::runtime_error("variable not found");
        }
        for (int i = 0; i < cAttributes; ++i) {
            char name[NC_MAX_NAME + 1] = {};
            if (const int status = nc_inq_attname(gid, varId, i, name); status != NC_NOERR) {
                throw Exception(status, Utf8ToWide("attribute of " + m_name), path);
            }
            // A group's own global attribute hides the same name in its ancestors.
            if (!m_attributes.contains(name)) {
                m_attributes.insert({name, ZorvoNetCDFDSG::detail::ReadNcAttribute(gid, varId, name, m_name, path)});
            }
        }
        int parent = -1;
        if (m_id != kGlobalsId || nc_inq_grp_parent(gid, &parent) != NC_NOERR) {
            return;
        }
        gid = parent;
    }
}

// From the attributes as they are now, so that NcML amendments count like the file's own values.
// The unpacked type is the netCDF type of scale_factor, else of add_offset, as the file stores it.
void Variable::DeterminePacking() {
    const NcVariant* scale = m_attributes.get(kScaleFactor);
    const NcVariant* offset = m_attributes.get(kAddOffset);
    const bool bPacked = scale != nullptr || offset != nullptr;
    const int unpackedType = bPacked ? NcTypeOfValue(scale != nullptr ? *scale : *offset) : 0;
    NcVariant scaleFactor = scale != nullptr ? *scale : NcVariant(static_cast<unsigned char>(1));
    NcVariant addOffset = offset != nullptr ? *offset : NcVariant(static_cast<unsigned char>(0));
    if (bPacked) {
        System::s_ChangeType(scaleFactor, unpackedType);
        System::s_ChangeType(addOffset, unpackedType);
    }
    m_bPacked = bPacked;
    m_unpackedType = unpackedType;
    m_scaleFactor = std::move(scaleFactor);
    m_addOffset = std::move(addOffset);
}

void Variable::AttributeChanged(const std::string& name) {
    // Only a variable of the file, loaded or created by NcML, has packing and a fill value.
    if (m_id < 0 || (name != kFillValue && name != kScaleFactor && name != kAddOffset && name != kMissingValue)) {
        return;
    }
    DeterminePacking();
    if (m_type != 0 || m_attributes.contains(kFillValue)) {
        DetermineFillValue();
    } else {
        m_fillValue = NcVariant();  // no data in the file: no default fill either
    }
}

bool Variable::HasAttribute(const std::string& name) const { return m_attributes.contains(name); }

NcVariant Variable::AttributeValue(const std::string& name) const {
    if (const NcVariant* value = m_attributes.get(name)) {
        return *value;
    }
    throw Exception(eAttributeNotPresent, Utf8ToWide(m_name + ": " + name), PathOf(CFMetadata()));
}

NcVariant Variable::TryAttributeValue(const std::string& name) const {
    const NcVariant* value = m_attributes.get(name);
    return value != nullptr ? *value : NcVariant{};
}

std::vector<std::string> Variable::ArrayAttributeValue(const std::string& name) const {
    const std::string text = std::get<std::string>(AttributeValue(name));
    std::vector<std::string> words;
    auto it = text.begin();
    while (it != text.end()) {
        it = std::find_if_not(it, text.end(), IsWhiteSpace);
        const auto end = std::find_if(it, text.end(), IsWhiteSpace);
        if (it != end) {
            words.emplace_back(it, end);
        }
        it = end;
    }
    return words;
}

bool Variable::SetAttributeValue(const std::string& name, const NcVariant& value) {
    const bool bAdded = m_attributes.insert_or_assign(name, value).second;
    AttributeChanged(name);
    return bAdded;
}

bool Variable::TryRemoveAttribute(const std::string& name) {
    if (m_attributes.erase(name) == 0) {
        return false;
    }
    AttributeChanged(name);
    return true;
}

namespace {
std::string TextOf(const Variable::AttributeMap& attributes, const char* name) {
    const NcVariant* value = attributes.get(name);
    return value != nullptr ? std::get<std::string>(*value) : std::string();
}
}  // namespace

std::string Variable::LongName() const { return TextOf(m_attributes, "long_name"); }
std::string Variable::Axis() const { return TextOf(m_attributes, "axis"); }
std::string Variable::StandardName() const { return TextOf(m_attributes, "standard_name"); }
std::string Variable::UnitsString() const { return std::get<std::string>(AttributeValue("units")); }
std::string Variable::TryUnitsString() const { return TextOf(m_attributes, "units"); }

// ---- strings ----

Variable::StringLayout Variable::ComputeStringLayout() const {
    if (m_type == 0) {
        ThrowInvalidType();
    }
    StringLayout layout;
    layout.kind = m_stringKind;
    if (m_type != NC_CHAR && m_type != NC_STRING) {
        layout.stringClass = eNotString;
        return layout;
    }
    if (m_dimIds.empty()) {
        layout.stringClass = eStringScalar;
        return layout;
    }
    const ICFMetadata* file = CFMetadata();
    if (file == nullptr) {
        throw std::runtime_error("variable without file");
    }
    layout.dim = m_dimIds.back();
    if (m_type == NC_CHAR) {
        // A disconnected file fails with "closed file".
        file->NcID();
        layout.length = file->DimLen(m_dimIds.back());
        layout.stringClass = m_dimIds.size() == 1 ? eStringScalar : eStringArray;
    } else {
        layout.stringClass = eStringArray;
        layout.kind = eNetCDF4Strings;
        layout.length = 255;
    }
    return layout;
}

Variable::StringLayout Variable::CurrentStringLayout() const {
    if (m_stringClass == eStringUnclassified) {
        return ComputeStringLayout();
    }
    return {m_stringClass, m_stringKind, m_stringDim, m_stringLength};
}

void Variable::ClassifyString() {
    if (m_stringClass != eStringUnclassified) {
        return;
    }
    // Computed before anything changes, so a failure leaves the variable unclassified.
    const StringLayout layout = ComputeStringLayout();
    m_stringClass = layout.stringClass;
    m_stringKind = layout.kind;
    m_stringDim = layout.dim;
    m_stringLength = layout.length;
}

bool Variable::IsString() const { return CurrentStringLayout().stringClass == eStringArray; }

bool Variable::IsStringScalar() const { return CurrentStringLayout().stringClass == eStringScalar; }

bool Variable::IsNetCDF4String() const {
    const StringLayout layout = CurrentStringLayout();
    return layout.stringClass == eStringArray && layout.kind == eNetCDF4Strings;
}

size_t Variable::cStringChars() const {
    return m_stringClass == eStringArray || m_stringClass == eStringScalar ? m_stringLength : 0;
}

void Variable::SetStringLength(size_t length) {
    if (m_stringClass == eStringArray || m_stringClass == eStringScalar) {
        m_stringLength = length;
    }
}

void Variable::ReclassifyString(long dimId) {
    if (m_stringClass == eStringScalar && m_stringDim == dimId) {
        m_stringClass = eNotString;
        m_stringDim = -1;
        m_stringLength = 1;
        DetermineFillValue();
    }
}

// ---- fill value ----

void Variable::DetermineFillValue() {
    if (const NcVariant* fill = m_attributes.get(kFillValue)) {
        m_fillValue = *fill;
        return;
    }
    if (m_stringClass == eStringArray || m_stringClass == eStringScalar) {
        m_fillValue = std::string();
        return;
    }
    if (m_type == 0) {
        ThrowInvalidType();
    }
    // Ask the library only when the file itself declares no _FillValue (NcML may have removed it):
    // nc_inq_var_fill would otherwise copy a declared value of any type and length into the buffer.
    const System::NcLock lock;
    int groupId = -1;
    if (const ICFMetadata* file = CFMetadata(); file != nullptr && m_id >= 0) {
        try {
            groupId = file->NcID();
        } catch (const std::runtime_error&) {
            groupId = -1;  // disconnected: the constants are the library's defaults anyway
        }
    }
    const int varId = static_cast<int>(m_id);
    int attId = -1;
    const bool bAskLibrary = groupId >= 0 && nc_inq_attid(groupId, varId, kFillValue, &attId) == NC_ENOTATT;
    const auto fill = [&](auto zero) {
        using T = decltype(zero);
        T value = DefaultFill<T>();
        int noFill = 0;
        if (bAskLibrary && nc_inq_var_fill(groupId, varId, &noFill, &value) != NC_NOERR) {
            value = DefaultFill<T>();
        }
        m_fillValue = value;
    };
    if (m_type == NC_CHAR) {
        char value = NC_FILL_CHAR;
        int noFill = 0;
        if (bAskLibrary && nc_inq_var_fill(groupId, varId, &noFill, &value) != NC_NOERR) {
            value = NC_FILL_CHAR;
        }
        m_fillValue = std::string(1, value);
        return;
    }
    if (!System::VisitNcNumericType(m_type, fill)) {
        throw std::runtime_error("invalid variable type");
    }
}

// ---- packing ----

std::pair<double, double> Variable::UnpackInfo() const {
    if (!m_bPacked) {
        return {1.0, 0.0};
    }
    return {System::s_ToDouble(m_scaleFactor), System::s_ToDouble(m_addOffset)};
}

double Variable::Unpack(double value) const {
    if (!m_bPacked) {
        return value;
    }
    const auto [scale, offset] = UnpackInfo();
    return scale * value + offset;
}

NcVariant Variable::Unpack(const NcVariant& value) const {
    if (!m_bPacked) {
        return value;
    }
    if (m_type == 0) {
        ThrowInvalidType();
    }
    if (m_unpackedType == 0) {
        ThrowInvalidUnpackedType();
    }
    if (m_type != m_unpackedType) {
        return System::s_ToDouble(value) * System::s_ToDouble(m_scaleFactor) + System::s_ToDouble(m_addOffset);
    }
    return std::visit(
        [this](const auto& v) -> NcVariant {
            using T = std::decay_t<decltype(v)>;
            if constexpr (std::is_arithmetic_v<T>) {
                return System::detail::Rescale(v, std::get<T>(m_scaleFactor), std::get<T>(m_addOffset));
            } else {
                throw std::runtime_error("s_Unpack: incompatible types");
            }
        },
        value);
}

void Variable::Unpack(System::NcVariantArray& values) const {
    if (!m_bPacked) {
        return;
    }
    if (m_unpackedType == 0) {
        ThrowInvalidUnpackedType();
    }
    values.Unpack(m_unpackedType, m_scaleFactor, m_addOffset);
}

}  // namespace ZorvoDSG
