#include <zorvodsg/json/ZorvoJSONValues.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <string>
#include <type_traits>
#include <variant>

#include <rapidjson/internal/dtoa.h>

#include <zorvodsg/json/ValidUtf8.h>

namespace ZorvoDSG {

namespace {

rapidjson::SizeType JsonSize(size_t size) { return static_cast<rapidjson::SizeType>(size); }

// The writer's output buffer. RapidJSON's RawValue copies byte by byte; a document of a million
// vertices is mostly raw vertices.
struct WriterOutput : ZorvoJSONWriter {
    static ZorvoJSONBuffer& Of(ZorvoJSONWriter& writer) { return *(writer.*(&WriterOutput::os_)); }
};

// Printable ASCII without quote or backslash: its JSON text is itself in quotes.
bool bPlainAscii(std::string_view text) {
    for (const char c : text) {
        if (c < 0x20 || c > 0x7E || c == '"' || c == '\\') {
            return false;
        }
    }
    return true;
}

// A string (a key in an object) whose text needs no escape.
void WriteQuoted(ZorvoJSONWriter& writer, std::string_view text) {
    writer.RawValue(text.data(), 0, rapidjson::kStringType);
    char* out = WriterOutput::Of(writer).Push(text.size() + 2);
    out[0] = '"';
    std::memcpy(out + 1, text.data(), text.size());
    out[text.size() + 1] = '"';
}

bool bOnlyNuls(std::string_view text) { return !text.empty() && text.find_first_not_of('\0') == std::string_view::npos; }

}  // namespace

void WriteJSONDouble(ZorvoJSONWriter& writer, double value) {
    if (std::isfinite(value)) {
        writer.Double(value);
    } else {
        writer.Null();
    }
}

size_t FormatJSONDouble(double value, char* out) {
    if (!std::isfinite(value)) {
        std::memcpy(out, "null", 4);
        return 4;
    }
    // The writer's own conversion, so that composed and directly written numbers read the same.
    return static_cast<size_t>(rapidjson::internal::dtoa(value, out) - out);
}

void WriteJSONRaw(ZorvoJSONWriter& writer, std::string_view json, rapidjson::Type type) {
    writer.RawValue(json.data(), 0, type);  // the separator before the value, and the writer's count
    std::memcpy(WriterOutput::Of(writer).Push(json.size()), json.data(), json.size());
}

void WriteJSONPlainKey(ZorvoJSONWriter& writer, std::string_view key) { WriteQuoted(writer, key); }

void WriteJSONText(ZorvoJSONWriter& writer, std::string_view text) {
    if (bPlainAscii(text)) {
        // Most texts need no escape: one copy instead of the writer's byte-by-byte escaping.
        WriteQuoted(writer, text);
    } else if (bValidUtf8(text)) {
        writer.String(text.data(), JsonSize(text.size()));
    } else {
        const std::string valid = ValidUtf8(text);
        writer.String(valid.data(), JsonSize(valid.size()));
    }
}

void WriteJSONValue(ZorvoJSONWriter& writer, const System::NcVariant& value) {
    std::visit(
        [&writer](const auto& v) {
            using T = std::decay_t<decltype(v)>;
            if constexpr (std::is_same_v<T, std::monostate>) {
                writer.Null();
            } else if constexpr (std::is_same_v<T, std::string>) {
                if (bOnlyNuls(v)) {
                    writer.Null();
                } else {
                    WriteJSONText(writer, v);
                }
            } else if constexpr (std::is_same_v<T, System::NcVariantArray>) {
                writer.StartArray();
                for (size_t i = 0; i < v.Size(); ++i) {
                    WriteJSONValue(writer, v[i]);
                }
                writer.EndArray();
            } else if constexpr (std::is_floating_point_v<T>) {
                WriteJSONDouble(writer, static_cast<double>(v));
            } else if constexpr (std::is_same_v<T, uint64_t>) {
                writer.Uint64(v);
            } else if constexpr (std::is_same_v<T, int64_t>) {
                writer.Int64(v);
            } else if constexpr (std::is_same_v<T, uint32_t>) {
                writer.Uint(v);
            } else {
                writer.Int(static_cast<int>(v));
            }
        },
        value);
}

}  // namespace ZorvoDSG
