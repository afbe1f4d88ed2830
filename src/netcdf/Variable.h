#pragma once
// One netCDF variable (or a group's global attributes) in memory: name, group, type, dimensions,
// attributes, string layout, fill value and CF packing. Loaded once, then copied freely; it never
// writes to the file. A copy may outlive its file: CFMetadata() is then null and FileId() fails.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include <zorvodsg/json/ZorvoJSONWriter.h>
#include <zorvodsg/values/AttributeMap.h>
#include <zorvodsg/values/NcVariant.h>

namespace ZorvoNetCDFDSG {
class NetCDFFile;
}

namespace ZorvoDSG {

class ICFMetadata;

class Variable {
public:
    using AttributeMap = System::AttributeMap;

    enum eStringClass : int { eStringUnclassified = 1, eNotString = 2, eStringArray = 3, eStringScalar = 4 };
    enum eStringKind : int { eFixedWidthChars = 3, eNetCDF4Strings = 4 };

    static constexpr long kGlobalsId = -1;
    static constexpr long kEmptyId = -2;
    static constexpr long kFakeOIDId = -3;

    Variable(const Variable&) = default;
    Variable(Variable&&) = default;
    Variable& operator=(const Variable&) = default;
    Variable& operator=(Variable&&) = default;
    ~Variable() = default;

    static Variable s_EmptyVariable();
    static Variable s_FakeOIDVariable();
    bool bEmpty() const { return m_id == kEmptyId; }

    // The file the variable belongs to; null for the special variables and once the file is gone.
    ICFMetadata* CFMetadata() const { return m_file ? *m_file : nullptr; }
    long Id() const { return m_id; }
    const std::string& Name() const { return m_name; }
    const std::string& FullGroupName() const { return m_fullGroupName; }
    std::string NameWithFullGroupName() const { return m_fullGroupName + m_name; }
    long FileId() const;
    void SetName(const std::string& name, const std::string& fullGroupName);

    int Type() const;
    int UnpackedType() const;
    int cDims() const;
    bool HasDim(long dimId) const;
    std::vector<long> aidDims() const { return m_dimIds; }
    std::vector<std::string> aDimNames() const { return m_dimNames; }

    void ClassifyString();
    // These classify as ClassifyString does, without changing the variable; every loaded variable is
    // classified at load already.
    bool IsString() const;
    bool IsStringScalar() const;
    bool IsNetCDF4String() const;
    size_t cStringChars() const;
    void SetStringLength(size_t length);
    void ReclassifyString(long dimId);

    bool HasAttribute(const std::string& name) const;
    System::NcVariant AttributeValue(const std::string& name) const;
    System::NcVariant TryAttributeValue(const std::string& name) const;
    const AttributeMap& Attributes() const { return m_attributes; }
    std::vector<std::string> ArrayAttributeValue(const std::string& name) const;
    // Replaces an existing value (false) or adds the attribute (true). Amending _FillValue,
    // scale_factor or add_offset (as NcML does) changes the fill value and the packing with it.
    bool SetAttributeValue(const std::string& name, const System::NcVariant& value);
    bool TryRemoveAttribute(const std::string& name);

    std::string LongName() const;
    std::string Axis() const;
    std::string StandardName() const;
    std::string UnitsString() const;
    std::string TryUnitsString() const;

    System::NcVariant FillValue() const { return m_fillValue; }
    bool IsPacked() const { return m_bPacked; }
    std::pair<double, double> UnpackInfo() const;
    double Unpack(double value) const;
    System::NcVariant Unpack(const System::NcVariant& value) const;
    void Unpack(System::NcVariantArray& values) const;

    // ZorvoJSON field object: {"name", "type"} and, for an array of strings, "length". The type is
    // that of the values a cursor delivers: "zorvoFieldTypeOID" for a variable with cf_role, a string
    // type for text of any kind, double for a packed variable whose unpacked type differs from the
    // stored one. Types a cursor cannot read fail before anything is written: std::runtime_error
    // "invalid type for variable" (none) or "unreocognised nc field type in ToZorvoJSON" (NC_USHORT,
    // user-defined types).
    void ToZorvoJSON(ZorvoJSONWriter& writer) const;
    // The "type" text of the field object; fails as ToZorvoJSON does.
    const char* ZorvoJSONFieldType() const;
    // One value of this variable (the caller writes the key), by the value's own alternative, so that
    // any value a cursor delivers, empty or unpacked, gives valid JSON (see WriteJSONValue).
    void ValueToZorvoJSON(const System::NcVariant& value, ZorvoJSONWriter& writer) const;

protected:
    friend class ZorvoNetCDFDSG::NetCDFFile;

    // Reads variable `varId` of group `groupId` (kGlobalsId: the group's global attributes).
    Variable(ICFMetadata* file, const std::string& fullGroupName, long groupId, long varId);
    // An unloaded variable: no type (NC_INT for the fake OID), no dimensions, no attributes.
    Variable(ICFMetadata* file, const std::string& fullGroupName, long id, const std::string& name);

private:
    struct StringLayout {
        int stringClass = eStringUnclassified;
        int kind = eFixedWidthChars;
        long dim = -1;
        size_t length = 0;
    };
    // The string layout ClassifyString gives; fails as it does.
    StringLayout ComputeStringLayout() const;
    // The class, computed when the variable is not classified yet.
    StringLayout CurrentStringLayout() const;

    void LoadAttributes(int groupId);
    void DeterminePacking();
    void DetermineFillValue();
    // Packing and fill value follow amendments of _FillValue, scale_factor, add_offset, missing_value.
    void AttributeChanged(const std::string& name);

    std::string m_name;
    std::string m_fullGroupName;
    std::shared_ptr<ICFMetadata* const> m_file;  // null for the special variables
    long m_id = kEmptyId;
    int m_stringClass = eStringUnclassified;
    int m_stringKind = eFixedWidthChars;
    long m_stringDim = -1;
    size_t m_stringLength = 0;
    int m_type = 0;
    int m_unpackedType = 0;
    int m_cDims = -1;
    bool m_bPacked = false;
    AttributeMap m_attributes;
    std::vector<long> m_dimIds;
    std::vector<std::string> m_dimNames;
    System::NcVariant m_fillValue;
    System::NcVariant m_scaleFactor = static_cast<unsigned char>(1);
    System::NcVariant m_addOffset = static_cast<unsigned char>(0);
};

}  // namespace ZorvoDSG
