#include <zorvodsg/featureclass/ZorvoJSONFeatureSet.h>

#include <ostream>
#include <stdexcept>
#include <string>
#include <vector>

#include <zorvodsg/cursor/Feature.h>
#include <zorvodsg/cursor/IFeatureCursor.h>
#include <zorvodsg/json/JSONKeyGuard.h>
#include <zorvodsg/json/ZorvoJSONValues.h>

namespace ZorvoDSG {

namespace {

// The instance variables a cursor selects for these names: for each name, the first variable of
// that group-qualified name.
std::vector<Variable> Selected(const IFeatureClass& featureClass, const std::vector<std::string>& names) {
    std::vector<Variable> selected;
    for (const std::string& name : names) {
        for (const Variable& variable : featureClass.InstanceVariables()) {
            if (variable.NameWithFullGroupName() == name) {
                selected.push_back(variable);
                break;
            }
        }
    }
    return selected;
}

void WriteFields(const std::vector<Variable>& variables, ZorvoJSONWriter& writer) {
    writer.Key("fields");
    writer.StartArray();
    JSONKeyGuard names;
    for (const Variable& variable : variables) {
        if (names.bFirst(variable.Name())) {
            variable.ToZorvoJSON(writer);
        }
    }
    writer.EndArray();
}

void Flush(ZorvoJSONBuffer& buffer, std::ostream& out) {
    out.write(buffer.GetString(), static_cast<std::streamsize>(buffer.GetSize()));
    buffer.Clear();
    if (!out) {
        throw std::runtime_error("cannot write the ZorvoJSON document");
    }
}

}  // namespace

SpatialFilter ZorvoJSONFeatureSet::s_DefaultFilter(const IFeatureClass& featureClass) {
    std::vector<std::string> names;
    names.reserve(featureClass.InstanceVariables().size());
    for (const Variable& variable : featureClass.InstanceVariables()) {
        names.push_back(variable.NameWithFullGroupName());
    }
    return SpatialFilter(nullptr, SpaceTime::eSpatialRelationUndefined, Host::WKSEnvelopeZ(), names, {});
}

void ZorvoJSONFeatureSet::s_Write(IFeatureClass& featureClass, ZorvoJSONWriter& writer) {
    s_Write(featureClass, s_DefaultFilter(featureClass), writer);
}

void ZorvoJSONFeatureSet::s_Write(IFeatureClass& featureClass, const SpatialFilter& filter, ZorvoJSONWriter& writer,
                                  const FeatureWritten& featureWritten) {
    const std::vector<Variable> variables = Selected(featureClass, filter.InstanceVariables());
    for (const Variable& variable : variables) {
        variable.ZorvoJSONFieldType();  // fails here rather than halfway through the document
    }
    const SpatialFilter search(filter.OutputSpatialReference(), filter.SpatialRelation(), filter.Envelope(),
                               filter.InstanceVariables(), {});
    std::shared_ptr<IFeatureCursor> cursor = featureClass.Search(search);

    writer.StartObject();
    writer.Key("objectIdFieldName");
    WriteJSONText(writer, featureClass.Name());
    writer.Key("geometryType");
    writer.String("zorvoGeometryPolyline");
    writer.Key("spatialReference");
    writer.StartObject();
    writer.EndObject();
    writer.Key("hasZ");
    writer.Bool(true);
    WriteFields(variables, writer);
    writer.Key("features");
    writer.StartArray();
    const JSONObjectKeys attributeKeys = Feature::s_AttributeKeys(variables);
    std::shared_ptr<Feature> feature = cursor->CreateEmptyFeature();
    while (cursor->QueryNext(feature)) {
        feature->ToZorvoJSON(attributeKeys, writer);
        if (featureWritten) {
            featureWritten();
        }
    }
    writer.EndArray();
    writer.EndObject();
}

void ZorvoJSONFeatureSet::s_Stream(IFeatureClass& featureClass, std::ostream& out) {
    s_Stream(featureClass, s_DefaultFilter(featureClass), out);
}

void ZorvoJSONFeatureSet::s_Stream(IFeatureClass& featureClass, const SpatialFilter& filter, std::ostream& out) {
    ZorvoJSONBuffer buffer;
    ZorvoJSONWriter writer(buffer);
    if (featureClass.FeatureType() == eFeaturePoint) {
        featureClass.ToZorvoJSON(writer);
    } else {
        s_Write(featureClass, filter, writer, [&buffer, &out] {
            if (buffer.GetSize() >= kStreamChunk) {
                Flush(buffer, out);
            }
        });
    }
    Flush(buffer, out);
}

}  // namespace ZorvoDSG
