#include <zorvodsg/json/ZorvoJSONValues.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <string>
#include <type_traits>
#include <variant>

#include <rapidjson/internal/dtoa.h>
#include <rapidjson/internal/itoa.h>

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

// A text that needs no escape, in quotes.
void AppendQuoted(ZorvoJSONBuffer& out, std::string_view text) {
    AppendJSON(out, "\"");
    AppendJSON(out, text);
    AppendJSON(out, "\"");
}

// A string (a key in an object) whose text needs no escape.
void WriteQuoted(ZorvoJSONWriter& writer, std::string_view text) {
    AppendQuoted(StartJSONRaw(writer, rapidjson::kStringType), text);
}

bool bOnlyNuls(std::string_view text) { return !text.empty() && text.find_first_not_of('\0') == std::string_view::npos; }

// A number converted by `convert` (one of RapidJSON's own), into at most `room` characters.
template <typename Convert>
void AppendConverted(ZorvoJSONBuffer& out, size_t room, Convert convert) {
    char* begin = out.Push(room);
    const char* end = convert(begin);
    out.Pop(room - static_cast<size_t>(end - begin));
}

// The text of a value the writer must escape or compose (rare in files): written by a writer of its own.
void AppendThroughWriter(ZorvoJSONBuffer& out, const System::NcVariant& value) {
    ZorvoJSONBuffer scratch;
    ZorvoJSONWriter writer(scratch);
    WriteJSONValue(writer, value);
    AppendJSON(out, std::string_view(scratch.GetString(), scratch.GetSize()));
}

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
    AppendJSON(StartJSONRaw(writer, type), json);
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

ZorvoJSONBuffer& StartJSONRaw(ZorvoJSONWriter& writer, rapidjson::Type type) {
    writer.RawValue("", 0, type);
    return WriterOutput::Of(writer);
}

// Each conversion is the writer's own, with the room the writer gives it, so that the text is the same.
void AppendJSONValue(ZorvoJSONBuffer& out, const System::NcVariant& value) {
    namespace rj = rapidjson::internal;
    std::visit(
        [&out, &value](const auto& v) {
            using T = std::decay_t<decltype(v)>;
            if constexpr (std::is_same_v<T, std::monostate>) {
                AppendJSON(out, "null");
            } else if constexpr (std::is_same_v<T, std::string>) {
                if (bOnlyNuls(v)) {
                    AppendJSON(out, "null");
                } else if (bPlainAscii(v)) {
                    AppendQuoted(out, v);
                } else {
                    AppendThroughWriter(out, value);
                }
            } else if constexpr (std::is_same_v<T, System::NcVariantArray>) {
                AppendThroughWriter(out, value);
            } else if constexpr (std::is_floating_point_v<T>) {
                const auto number = static_cast<double>(v);
                if (std::isfinite(number)) {
                    AppendConverted(out, 25, [number](char* p) { return rj::dtoa(number, p); });
                } else {
                    AppendJSON(out, "null");
                }
            } else if constexpr (std::is_same_v<T, uint64_t>) {
                AppendConverted(out, 20, [v](char* p) { return rj::u64toa(v, p); });
            } else if constexpr (std::is_same_v<T, int64_t>) {
                AppendConverted(out, 21, [v](char* p) { return rj::i64toa(v, p); });
            } else if constexpr (std::is_same_v<T, uint32_t>) {
                AppendConverted(out, 10, [v](char* p) { return rj::u32toa(v, p); });
            } else {
                AppendConverted(out, 11, [v](char* p) { return rj::i32toa(static_cast<int>(v), p); });
            }
        },
        value);
}

}  // namespace ZorvoDSG
