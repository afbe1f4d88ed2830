#include "CsvWriter.h"

#include <charconv>
#include <cmath>
#include <type_traits>
#include <variant>

#include "Names.h"
#include "OutputFile.h"

namespace zdsg {

namespace {

template <typename T>
void Chars(OutputFile& out, T value) {
    char buffer[kNumberCapacity];
    if constexpr (std::is_floating_point_v<T>) {
        out.Write(std::string_view(buffer, FormatNumber(value, buffer)));
    } else {
        const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
        out.Write(std::string_view(buffer, static_cast<size_t>(result.ptr - buffer)));
    }
}

}  // namespace

CsvWriter::CsvWriter(OutputFile& out, bool bNativeCrs) : m_out(out), m_bNativeCrs(bNativeCrs) {}

void CsvWriter::Text(std::string_view text) {
    std::string copy;
    const std::string_view valid = ZorvoDSG::bValidUtf8(text) ? text : (copy = ValidUtf8(text));
    if (valid.find_first_of(",\"\r\n") == std::string_view::npos) {
        m_out.Write(valid);
        return;
    }
    m_out.Put('"');
    for (const char c : valid) {
        if (c == '"') {
            m_out.Put('"');
        }
        m_out.Put(c);
    }
    m_out.Put('"');
}

void CsvWriter::Number(double value, bool bFloat) {
    if (std::isnan(value)) {
        return;
    }
    if (std::isinf(value)) {
        m_out.Write(NumberText(value));
    } else if (bFloat) {
        Chars(m_out, static_cast<float>(value));
    } else {
        Chars(m_out, value);
    }
}

void CsvWriter::Value(const ZorvoDSG::System::NcVariant* value) {
    if (value == nullptr) {
        return;
    }
    std::visit(
        [this](const auto& v) {
            using T = std::decay_t<decltype(v)>;
            if constexpr (std::is_same_v<T, std::monostate>) {
                // a fill value: empty
            } else if constexpr (std::is_same_v<T, std::string>) {
                Text(v);
            } else if constexpr (std::is_same_v<T, ZorvoDSG::System::NcVariantArray>) {
                Text(ValueText(v));
            } else if constexpr (std::is_floating_point_v<T>) {
                Number(v, std::is_same_v<T, float>);
            } else if constexpr (std::is_signed_v<T>) {
                Chars(m_out, static_cast<long long>(v));
            } else {
                Chars(m_out, static_cast<unsigned long long>(v));
            }
        },
        *value);
}

void CsvWriter::Begin(const std::vector<std::string>& columns) {
    m_out.Write(m_bNativeCrs ? "class,oid,time,x,y,z,crs" : "class,oid,time,x,y,z");
    for (const auto& column : columns) {
        m_out.Put(',');
        Text(column);
    }
    m_out.Write("\r\n");
}

void CsvWriter::Row(const FeatureRecord& record, std::string_view time, double x, double y, double z, bool bFloatXY,
                    bool bFloatZ, std::span<const ZorvoDSG::System::NcVariant* const> values) {
    Text(record.featureClass->name);
    m_out.Put(',');
    Value(record.oid);
    m_out.Put(',');
    m_out.Write(time);
    m_out.Put(',');
    Number(x, bFloatXY);
    m_out.Put(',');
    Number(y, bFloatXY);
    m_out.Put(',');
    Number(z, bFloatZ);
    if (m_bNativeCrs) {
        m_out.Put(',');
        Text(record.featureClass->nativeCrs);
    }
    for (const auto* value : values) {
        m_out.Put(',');
        Value(value);
    }
    m_out.Write("\r\n");
}

void CsvWriter::Point(const PointRecord& point) {
    Row(point, point.time, point.x, point.y, point.z, point.bFloatXY, point.bFloatZ, point.values);
}

void CsvWriter::Profile(const ProfileRecord& profile) {
    for (const ProfileRecord::Row& row : profile.rows) {
        Row(profile, row.time, profile.x, profile.y, row.z, profile.bFloatXY, false, row.values);
    }
}

void CsvWriter::Trajectory(const TrajectoryRecord& trajectory) {
    for (const TrajectoryRecord::Vertex& vertex : trajectory.vertices) {
        Row(trajectory, vertex.time, vertex.x, vertex.y, vertex.z, trajectory.bFloatXY, false, vertex.values);
    }
}

void CsvWriter::End() {}

}  // namespace zdsg
