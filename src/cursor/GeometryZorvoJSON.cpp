// The ZorvoJSON polylines of profile and trajectory geometry. A document is mostly vertices, so each
// vertex is composed as text and handed to the writer at once, and a number that a vertex repeats
// (a profile's x and y, its value as z and m) is converted once.
#include <zorvodsg/cursor/WKSProfile.h>
#include <zorvodsg/cursor/WKSTrajectory.h>

#include <cstring>

#include <zorvodsg/json/ZorvoJSONValues.h>

namespace ZorvoDSG::SpaceTime {

namespace {

// "[x,y,z,m]" at most.
constexpr size_t kVertexChars = 4 * (kJSONDoubleChars + 1) + 1;

void StartPolyline(ZorvoJSONWriter& writer) {
    writer.StartObject();
    WriteJSONPlainKey(writer, "hasZ");
    writer.Bool(true);
    WriteJSONPlainKey(writer, "hasM");
    writer.Bool(true);
    WriteJSONPlainKey(writer, "paths");
    writer.StartArray();
}

void EndPolyline(ZorvoJSONWriter& writer) {
    writer.EndArray();
    writer.EndObject();
}

// Appends the number and `separator`; returns the new end.
char* Append(char* end, double value, char separator) {
    end += FormatJSONDouble(value, end);
    *end++ = separator;
    return end;
}

void WriteVertex(ZorvoJSONWriter& writer, const char* text, const char* end) {
    WriteJSONRaw(writer, std::string_view(text, static_cast<size_t>(end - text)), rapidjson::kArrayType);
}

}  // namespace

void WKSProfile::ToZorvoJSON(ZorvoJSONWriter& writer) const {
    StartPolyline(writer);
    writer.StartArray();
    char vertex[kVertexChars];
    vertex[0] = '[';
    char* const xyEnd = Append(Append(vertex + 1, x, ','), y, ',');
    const double* v = Values();
    for (int32_t i = 0; i < count; ++i) {
        char* const zEnd = Append(xyEnd, v[i], ',');
        const size_t cValue = static_cast<size_t>(zEnd - 1 - xyEnd);
        std::memcpy(zEnd, xyEnd, cValue);
        zEnd[cValue] = ']';
        WriteVertex(writer, vertex, zEnd + cValue + 1);
    }
    writer.EndArray();
    EndPolyline(writer);
}

void WKSTrajectory::ToZorvoJSON(ZorvoJSONWriter& writer) const {
    StartPolyline(writer);
    if (count > 0) {
        writer.StartArray();
        char vertex[kVertexChars];
        vertex[0] = '[';
        const WKSPointXYZT* p = Points();
        for (int32_t i = 0; i < count; ++i) {
            char* const end = Append(Append(Append(Append(vertex + 1, p[i].x, ','), p[i].y, ','), p[i].z, ','), p[i].t, ']');
            WriteVertex(writer, vertex, end);
        }
        writer.EndArray();
    }
    EndPolyline(writer);
}

}  // namespace ZorvoDSG::SpaceTime
