// The ZorvoJSON feature objects of every kind of feature.
#include <zorvodsg/cursor/Feature.h>
#include <zorvodsg/cursor/PointFeature.h>
#include <zorvodsg/cursor/ProfileFeature.h>
#include <zorvodsg/cursor/TrajectoryFeature.h>

#include <zorvodsg/json/ZorvoJSONValues.h>

namespace ZorvoDSG {

JSONObjectKeys Feature::s_AttributeKeys(const std::vector<Variable>& instanceVariables) {
    std::vector<std::string_view> names;
    names.reserve(instanceVariables.size());
    for (const Variable& variable : instanceVariables) {
        names.emplace_back(variable.Name());
    }
    return JSONObjectKeys(names);
}

void Feature::AttributesToZorvoJSON(const JSONObjectKeys& attributeKeys, ZorvoJSONWriter& writer) const {
    WriteJSONPlainKey(writer, "attributes");
    attributeKeys.AppendObject(StartJSONRaw(writer, rapidjson::kObjectType), InstanceValues());
}

void PointFeature::ToZorvoJSON(const std::vector<Variable>& instanceVariables, ZorvoJSONWriter& writer) const {
    ToZorvoJSON(s_AttributeKeys(instanceVariables), writer);
}

void PointFeature::ToZorvoJSON(const JSONObjectKeys& attributeKeys, ZorvoJSONWriter& writer) const {
    // A point's geometry object is empty: the whole feature object is composed as text.
    ZorvoJSONBuffer& out = StartJSONRaw(writer, rapidjson::kObjectType);
    AppendJSON(out, R"({"geometry":{},"attributes":)");
    attributeKeys.AppendObject(out, InstanceValues());
    AppendJSON(out, "}");
}

void ProfileFeature::ToZorvoJSON(const std::vector<Variable>& instanceVariables, ZorvoJSONWriter& writer) const {
    ToZorvoJSON(s_AttributeKeys(instanceVariables), writer);
}

void ProfileFeature::ToZorvoJSON(const JSONObjectKeys& attributeKeys, ZorvoJSONWriter& writer) const {
    writer.StartObject();
    WriteJSONPlainKey(writer, "geometry");
    m_geometry->ToZorvoJSON(writer);
    AttributesToZorvoJSON(attributeKeys, writer);
    writer.EndObject();
}

void TrajectoryFeature::ToZorvoJSON(const std::vector<Variable>& instanceVariables, ZorvoJSONWriter& writer) const {
    ToZorvoJSON(s_AttributeKeys(instanceVariables), writer);
}

void TrajectoryFeature::ToZorvoJSON(const JSONObjectKeys& attributeKeys, ZorvoJSONWriter& writer) const {
    writer.StartObject();
    WriteJSONPlainKey(writer, "geometry");
    m_geometry->ToZorvoJSON(writer);
    AttributesToZorvoJSON(attributeKeys, writer);
    writer.EndObject();
}

}  // namespace ZorvoDSG
