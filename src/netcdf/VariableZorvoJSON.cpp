// The ZorvoJSON forms of a variable: its field object and its values.
#include <zorvodsg/netcdf/Variable.h>

#include <netcdf.h>

#include <stdexcept>

#include <zorvodsg/json/ZorvoJSONValues.h>

namespace ZorvoDSG {

const char* Variable::ZorvoJSONFieldType() const {
    if (HasAttribute("cf_role")) {
        return "zorvoFieldTypeOID";
    }
    const int type = Type();
    switch (type) {
        case NC_CHAR:
        case NC_STRING:
            return "zorvoFieldTypeString";
        case NC_BYTE:
        case NC_SHORT:
        case NC_INT:
        case NC_FLOAT:
        case NC_DOUBLE:
        case NC_UBYTE:
        case NC_UINT:
        case NC_INT64:
        case NC_UINT64:
            break;
        default:
            // NC_USHORT has no value alternative, so no cursor reads it; user-defined types neither.
            throw std::runtime_error("unreocognised nc field type in ToZorvoJSON");
    }
    // Cursors unpack instance values, to a double when the unpacked type is not the stored one.
    if (IsPacked() && UnpackedType() != type) {
        return "zorvoFieldTypeDouble";
    }
    switch (type) {
        case NC_BYTE:
        case NC_SHORT:
        case NC_UBYTE:
            return "zorvoFieldTypeSmallInteger";
        case NC_INT:
        case NC_UINT:
            return "zorvoFieldTypeInteger";
        case NC_FLOAT:
            return "zorvoFieldTypeSingle";
        case NC_DOUBLE:
            return "zorvoFieldTypeDouble";
        default:
            return "zorvoFieldTypeBigInteger";
    }
}

void Variable::ToZorvoJSON(ZorvoJSONWriter& writer) const {
    const char* type = ZorvoJSONFieldType();
    writer.StartObject();
    writer.Key("name");
    WriteJSONText(writer, m_name);
    writer.Key("type");
    writer.String(type);
    if (m_stringClass == eStringArray && !HasAttribute("cf_role")) {
        writer.Key("length");
        writer.Uint64(cStringChars());
    }
    writer.EndObject();
}

void Variable::ValueToZorvoJSON(const System::NcVariant& value, ZorvoJSONWriter& writer) const {
    WriteJSONValue(writer, value);
}

}  // namespace ZorvoDSG
