#pragma once
// The primitives every ZorvoJSON document is written with, so that the text stays valid JSON
// whatever a file holds: RapidJSON's Writer refuses NaN and infinities after it has written the
// separator, and copies invalid UTF-8 through unchanged. None of these functions throws for any
// value; only the writer's allocator can fail.

#include <cstring>
#include <string_view>

#include <zorvodsg/json/ZorvoJSONWriter.h>
#include <zorvodsg/values/NcVariant.h>

namespace ZorvoDSG {

// A number; NaN and the infinities are null.
void WriteJSONDouble(ZorvoJSONWriter& writer, double value);
// The same text into `out`, which has room for kJSONDoubleChars; returns its length. For values
// composed of several numbers and written at once with the writer's RawValue.
inline constexpr size_t kJSONDoubleChars = 26;
size_t FormatJSONDouble(double value, char* out);
// A key that needs no escape (a name of the document forms), copied without the writer's escaping.
void WriteJSONPlainKey(ZorvoJSONWriter& writer, std::string_view key);
// A value already composed as JSON text (valid, and of the given type), appended in one copy.
void WriteJSONRaw(ZorvoJSONWriter& writer, std::string_view json, rapidjson::Type type);
// A string; invalid UTF-8 becomes U+FFFD, control characters are escaped.
void WriteJSONText(ZorvoJSONWriter& writer, std::string_view text);
// A value by its alternative: empty is null; integers as integers; a float widened to the double
// nearest to it; text as text, except a text made only of NUL characters (the fill of a character
// variable), which is null; an array as an array of its elements.
void WriteJSONValue(ZorvoJSONWriter& writer, const System::NcVariant& value);

// For a value composed as text straight into the writer's buffer, which is much cheaper than a
// writer call per member when a document has millions of small objects: writes the separator
// before a value of `type` and returns the buffer, to which the caller then appends the whole
// value, valid, before its next use of the writer.
ZorvoJSONBuffer& StartJSONRaw(ZorvoJSONWriter& writer, rapidjson::Type type);
// Appends JSON text as it is (inline: mostly a few bytes known at compile time).
inline void AppendJSON(ZorvoJSONBuffer& out, std::string_view json) {
    std::memcpy(out.Push(json.size()), json.data(), json.size());
}
// Appends the text WriteJSONValue writes for `value`.
void AppendJSONValue(ZorvoJSONBuffer& out, const System::NcVariant& value);

}  // namespace ZorvoDSG
