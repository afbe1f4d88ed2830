#include "JsonReport.h"

#include <rapidjson/ostreamwrapper.h>
#include <rapidjson/prettywriter.h>

#include <cmath>
#include <cstdlib>
#include <ostream>
#include <variant>

#include <zorvodsg/json/ValidUtf8.h>

#include "Names.h"

namespace zdsg {

using Writer = rapidjson::PrettyWriter<rapidjson::OStreamWrapper>;

struct JsonReport::Impl {
    explicit Impl(std::ostream& target) : out(&target), stream(target), writer(stream) { writer.SetIndent(' ', 2); }

    std::ostream* out;
    rapidjson::OStreamWrapper stream;
    Writer writer;
};

namespace {

// netCDF names and texts are bytes as the file holds them; the document must stay valid UTF-8.
void String(Writer& w, const std::string& text) {
    const std::string valid = ZorvoDSG::ValidUtf8(text);
    w.String(valid.data(), static_cast<rapidjson::SizeType>(valid.size()));
}

void Key(Writer& w, const char* key) { w.Key(key); }

void OptionalString(Writer& w, const char* key, const std::optional<std::string>& text) {
    Key(w, key);
    if (text) {
        String(w, *text);
    } else {
        w.Null();
    }
}

// JSON has no NaN or infinities; they are written as the texts "NaN", "Infinity", "-Infinity".
void Number(Writer& w, double value) {
    if (std::isfinite(value)) {
        w.Double(value);
    } else {
        String(w, NumberText(value));
    }
}

void Value(Writer& w, const ZorvoDSG::System::NcVariant& value);

void Array(Writer& w, const ZorvoDSG::System::NcVariantArray& values) {
    w.StartArray();
    for (size_t i = 0; i < values.Size(); ++i) {
        Value(w, values[i]);
    }
    w.EndArray();
}

void Value(Writer& w, const ZorvoDSG::System::NcVariant& value) {
    std::visit(
        [&w](const auto& v) {
            using T = std::decay_t<decltype(v)>;
            if constexpr (std::is_same_v<T, std::monostate>) {
                w.Null();
            } else if constexpr (std::is_same_v<T, std::string>) {
                String(w, v);
            } else if constexpr (std::is_same_v<T, ZorvoDSG::System::NcVariantArray>) {
                Array(w, v);
            } else if constexpr (std::is_same_v<T, float>) {
                // The float's own shortest text, so 0.01f is written 0.01 and not 0.009999999776482582.
                Number(w, std::isfinite(v) ? std::strtod(NumberText(v).c_str(), nullptr) : static_cast<double>(v));
            } else if constexpr (std::is_same_v<T, double>) {
                Number(w, v);
            } else if constexpr (std::is_same_v<T, uint64_t>) {
                w.Uint64(v);
            } else if constexpr (std::is_same_v<T, int64_t>) {
                w.Int64(v);
            } else if constexpr (std::is_unsigned_v<T>) {
                w.Uint(v);
            } else {
                w.Int(v);
            }
        },
        value);
}

void StringArray(Writer& w, const std::vector<std::string>& texts) {
    w.StartArray();
    for (const auto& text : texts) {
        String(w, text);
    }
    w.EndArray();
}

void Coordinate(Writer& w, const CoordinateReport& c) {
    w.StartObject();
    Key(w, "role");
    String(w, c.axis);
    if (c.zUp) {
        Key(w, "direction");
        String(w, *c.zUp ? "up" : "down");
        Key(w, "verticalDatumModel");
        String(w, c.verticalDatumModel);
    }
    if (c.axis == "T") {
        Key(w, "timeUnit");
        String(w, c.timeUnit);
        Key(w, "baseTime");
        if (c.baseTime.empty()) {
            w.Null();
        } else {
            String(w, c.baseTime);
        }
        if (!c.error.empty()) {
            Key(w, "error");
            String(w, c.error);
        }
    }
    w.EndObject();
}

void Variable(Writer& w, const VariableReport& v) {
    w.StartObject();
    Key(w, "name");
    String(w, v.name);
    Key(w, "id");
    w.Int64(v.id);
    Key(w, "type");
    String(w, v.type);
    Key(w, "dimensions");
    StringArray(w, v.dimensions);
    OptionalString(w, "units", v.units);
    OptionalString(w, "standardName", v.standardName);
    OptionalString(w, "gridMapping", v.gridMapping);
    Key(w, "coordinate");
    if (v.coordinate) {
        Coordinate(w, *v.coordinate);
    } else {
        w.Null();
    }
    Key(w, "packing");
    if (v.packing) {
        w.StartObject();
        Key(w, "scale");
        Value(w, v.packing->first);
        Key(w, "offset");
        Value(w, v.packing->second);
        w.EndObject();
    } else {
        w.Null();
    }
    Key(w, "fillValue");
    Value(w, v.fillValue);
    w.EndObject();
}

void Crs(Writer& w, const CrsReport& crs) {
    w.StartObject();
    Key(w, "name");
    String(w, crs.gridMapping);
    Key(w, "usedBy");
    StringArray(w, crs.usedBy);
    OptionalString(w, "wkt", crs.wkt);
    OptionalString(w, "wktError", crs.wktError);
    OptionalString(w, "vwkt", crs.vwkt);
    OptionalString(w, "vwktError", crs.vwktError);
    w.EndObject();
}

void Dataset(Writer& w, const DatasetReport& d) {
    w.StartObject();
    Key(w, "name");
    String(w, d.name);
    Key(w, "fullGroupName");
    String(w, d.fullGroupName);
    Key(w, "format");
    String(w, d.format);
    OptionalString(w, "cfConventions", d.cfVersion);
    Key(w, "featureType");
    String(w, d.featureType);
    Key(w, "cfRoles");
    w.StartArray();
    for (const auto& role : d.cfRoles) {
        w.StartObject();
        Key(w, "variable");
        String(w, role.variable);
        Key(w, "value");
        String(w, role.value);
        w.EndObject();
    }
    w.EndArray();
    Key(w, "globalAttributes");
    w.StartObject();
    for (const auto& [name, value] : d.globalAttributes) {
        String(w, name);
        Value(w, value);
    }
    w.EndObject();
    Key(w, "dimensions");
    w.StartArray();
    for (const auto& dimension : d.dimensions) {
        w.StartObject();
        Key(w, "name");
        String(w, dimension.name);
        Key(w, "length");
        w.Uint64(dimension.length);
        w.EndObject();
    }
    w.EndArray();
    Key(w, "variables");
    w.StartArray();
    for (const auto& variable : d.variables) {
        Variable(w, variable);
    }
    w.EndArray();
    Key(w, "gridMappings");
    w.StartArray();
    for (const auto& crs : d.crs) {
        Crs(w, crs);
    }
    w.EndArray();
    Key(w, "errors");
    StringArray(w, d.errors);
    w.EndObject();
}

}  // namespace

JsonReport::JsonReport(std::ostream& out) : m_impl(std::make_unique<Impl>(out)) {}

JsonReport::~JsonReport() = default;

void JsonReport::Begin(const RunInfo& info) {
    Writer& w = m_impl->writer;
    w.StartObject();
    Key(w, "zdsg");
    w.StartObject();
    Key(w, "version");
    String(w, info.version);
    OptionalString(w, "udunits2", info.udunits2);
    OptionalString(w, "ncml", info.ncml);
    w.EndObject();
    Key(w, "files");
    w.StartArray();
}

void JsonReport::File(const FileReport& file) {
    Writer& w = m_impl->writer;
    w.StartObject();
    Key(w, "path");
    String(w, file.path);
    Key(w, "status");
    String(w, file.read ? "read" : "refused");
    Key(w, "error");
    if (file.read) {
        w.Null();
    } else {
        String(w, file.error);
    }
    Key(w, "messages");
    w.StartArray();
    for (const auto& message : file.messages) {
        w.StartObject();
        Key(w, "code");
        w.Int64(message.code);
        Key(w, "name");
        String(w, message.name);
        Key(w, "text");
        String(w, message.text);
        w.EndObject();
    }
    w.EndArray();
    Key(w, "datasets");
    w.StartArray();
    for (const auto& dataset : file.datasets) {
        Dataset(w, dataset);
    }
    w.EndArray();
    w.EndObject();
    m_impl->out->flush();
}

void JsonReport::End(const Summary& summary) {
    Writer& w = m_impl->writer;
    w.EndArray();
    Key(w, "summary");
    w.StartObject();
    const std::pair<const char*, size_t> counts[] = {
        {"files", summary.files},         {"read", summary.read},           {"refused", summary.refused},
        {"datasets", summary.datasets}, {"variables", summary.variables}, {"messages", summary.messages},
    };
    for (const auto& [key, count] : counts) {
        Key(w, key);
        w.Uint64(count);
    }
    w.EndObject();
    w.EndObject();
    *m_impl->out << '\n';
    m_impl->out->flush();
}

}  // namespace zdsg
