#include "GeoJsonWriter.h"

#include <rapidjson/writer.h>

#include <cmath>

#include "JsonValue.h"
#include "OutputFile.h"

namespace zdsg {

using Writer = rapidjson::Writer<JsonOutputStream>;

struct GeoJsonWriter::Impl {
    Impl(OutputFile& target, bool bSequenceOutput)
        : out(target), stream(target), writer(stream), bSequence(bSequenceOutput) {}

    void StartFeature();
    void Properties(const FeatureRecord& record, const ProfileRecord* profile = nullptr);
    void Observations(const ProfileRecord& profile);
    // A Point, or null without a position; z only when it is not NaN.
    void PointGeometry(double x, double y, double z, bool bFloatXY, bool bFloatZ);
    void TrajectoryProperties(const TrajectoryRecord& trajectory);
    void Text(std::string_view text) {
        if (text.empty()) {
            writer.Null();
        } else {
            writer.String(text.data(), static_cast<rapidjson::SizeType>(text.size()));
        }
    }
    void EndFeature();
    void Coordinate(double value, bool bFloat) {
        if (bFloat) {
            WriteJsonNumber(writer, static_cast<float>(value), eNonFinite::eAsNull);
        } else {
            WriteJsonNumber(writer, value, eNonFinite::eAsNull);
        }
    }

    OutputFile& out;
    JsonOutputStream stream;
    Writer writer;  // reset for every feature, keeping its stack
    bool bSequence;
    bool bFirst = true;
    std::vector<std::string> columns;
};

void GeoJsonWriter::Impl::StartFeature() {
    if (bSequence) {
        out.Put('\x1e');
    } else if (!bFirst) {
        out.Write(",\n");
    }
    bFirst = false;
    writer.Reset(stream);
    writer.StartObject();
    writer.Key("type");
    writer.String("Feature");
}

void GeoJsonWriter::Impl::Properties(const FeatureRecord& record, const ProfileRecord* profile) {
    writer.Key("properties");
    writer.StartObject();
    writer.Key("class");
    WriteJsonString(writer, record.featureClass->name);
    writer.Key("oid");
    WriteJsonValue(writer, *record.oid, eNonFinite::eAsNull);
    writer.Key("time");
    if (record.time.empty()) {
        writer.Null();
    } else {
        writer.String(record.time.data(), static_cast<rapidjson::SizeType>(record.time.size()));
    }
    if (!record.featureClass->nativeCrs.empty()) {
        writer.Key("crs");
        WriteJsonString(writer, record.featureClass->nativeCrs);
    }
    for (size_t i = 0; i < record.values.size(); ++i) {
        if (const auto* value = record.values[i]) {
            WriteJsonString(writer, columns[i]);
            WriteJsonValue(writer, *value, eNonFinite::eAsNull);
        }
    }
    if (profile != nullptr) {
        Observations(*profile);
    }
    writer.EndObject();
}

// The runs of a profile or time series: their times or z values, and each observation variable.
void GeoJsonWriter::Impl::Observations(const ProfileRecord& profile) {
    writer.Key("observations");
    writer.StartObject();
    writer.Key(profile.bValuesAreZ ? "z" : "time");
    writer.StartArray();
    for (const ProfileRecord::Row& row : profile.rows) {
        if (profile.bValuesAreZ) {
            WriteJsonNumber(writer, row.z, eNonFinite::eAsNull);
        } else if (row.time.empty()) {
            writer.Null();
        } else {
            writer.String(row.time.data(), static_cast<rapidjson::SizeType>(row.time.size()));
        }
    }
    writer.EndArray();
    for (const auto& [column, values] : profile.observations) {
        WriteJsonString(writer, columns[column]);
        writer.StartArray();
        for (size_t j = 0; j < profile.cRows; ++j) {
            WriteJsonValue(writer, j < values->Size() ? (*values)[j] : ZorvoDSG::System::NcVariant{}, eNonFinite::eAsNull);
        }
        writer.EndArray();
    }
    writer.EndObject();
}

void GeoJsonWriter::Impl::EndFeature() {
    writer.EndObject();
    if (bSequence) {
        out.Put('\n');
    }
}

GeoJsonWriter::GeoJsonWriter(OutputFile& out, bool bSequence) : m_impl(std::make_unique<Impl>(out, bSequence)) {}

GeoJsonWriter::~GeoJsonWriter() = default;

void GeoJsonWriter::Begin(const std::vector<std::string>& columns) {
    m_impl->columns = columns;
    if (!m_impl->bSequence) {
        m_impl->out.Write("{\"type\":\"FeatureCollection\",\"features\":[\n");
    }
}

void GeoJsonWriter::Impl::PointGeometry(double x, double y, double z, bool bFloatXY, bool bFloatZ) {
    writer.Key("geometry");
    if (std::isnan(x) || std::isnan(y)) {
        writer.Null();
        return;
    }
    writer.StartObject();
    writer.Key("type");
    writer.String("Point");
    writer.Key("coordinates");
    writer.StartArray();
    Coordinate(x, bFloatXY);
    Coordinate(y, bFloatXY);
    if (!std::isnan(z)) {
        Coordinate(z, bFloatZ);
    }
    writer.EndArray();
    writer.EndObject();
}

void GeoJsonWriter::Point(const PointRecord& point) {
    Impl& impl = *m_impl;
    impl.StartFeature();
    impl.PointGeometry(point.x, point.y, point.z, point.bFloatXY, point.bFloatZ);
    impl.Properties(point);
    impl.EndFeature();
}

void GeoJsonWriter::Profile(const ProfileRecord& profile) {
    Impl& impl = *m_impl;
    impl.StartFeature();
    impl.PointGeometry(profile.x, profile.y, profile.z, profile.bFloatXY, false);
    impl.Properties(profile, &profile);
    impl.EndFeature();
}

// The instance values, the time range, and the vertices' times and observations as arrays.
void GeoJsonWriter::Impl::TrajectoryProperties(const TrajectoryRecord& trajectory) {
    writer.Key("properties");
    writer.StartObject();
    writer.Key("class");
    WriteJsonString(writer, trajectory.featureClass->name);
    writer.Key("oid");
    WriteJsonValue(writer, *trajectory.oid, eNonFinite::eAsNull);
    writer.Key("timeStart");
    Text(trajectory.timeStart);
    writer.Key("timeEnd");
    Text(trajectory.timeEnd);
    if (!trajectory.featureClass->nativeCrs.empty()) {
        writer.Key("crs");
        WriteJsonString(writer, trajectory.featureClass->nativeCrs);
    }
    for (size_t i = 0; i < trajectory.values.size(); ++i) {
        if (const auto* value = trajectory.values[i]) {
            WriteJsonString(writer, columns[i]);
            WriteJsonValue(writer, *value, eNonFinite::eAsNull);
        }
    }
    writer.Key("observations");
    writer.StartObject();
    writer.Key("time");
    writer.StartArray();
    for (const TrajectoryRecord::Vertex& vertex : trajectory.vertices) {
        Text(vertex.time);
    }
    writer.EndArray();
    for (const auto& [column, values] : trajectory.observations) {
        WriteJsonString(writer, columns[column]);
        writer.StartArray();
        for (size_t j = 0; j < values->Size(); ++j) {
            WriteJsonValue(writer, (*values)[j], eNonFinite::eAsNull);
        }
        writer.EndArray();
    }
    writer.EndObject();
    writer.EndObject();
}

void GeoJsonWriter::Trajectory(const TrajectoryRecord& trajectory) {
    Impl& impl = *m_impl;
    Writer& w = impl.writer;
    impl.StartFeature();
    w.Key("geometry");
    if (trajectory.vertices.empty()) {
        w.Null();
    } else {
        w.StartObject();
        w.Key("type");
        w.String("LineString");
        w.Key("coordinates");
        w.StartArray();
        const bool bZ = trajectory.featureClass->bHasZ;
        for (const TrajectoryRecord::Vertex& vertex : trajectory.vertices) {
            w.StartArray();
            impl.Coordinate(vertex.x, trajectory.bFloatXY);
            impl.Coordinate(vertex.y, trajectory.bFloatXY);
            if (bZ) {
                impl.Coordinate(vertex.z, false);
            }
            w.EndArray();
        }
        w.EndArray();
        w.EndObject();
    }
    impl.TrajectoryProperties(trajectory);
    impl.EndFeature();
}

void GeoJsonWriter::End() {
    if (!m_impl->bSequence) {
        m_impl->out.Write(m_impl->bFirst ? "]}\n" : "\n]}\n");
    }
}

}  // namespace zdsg
