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
    const std::string_view valid = bAscii(text) ? text : (copy = ValidUtf8(text));
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

void CsvWriter::Common(const FeatureRecord& record) {
    Text(record.featureClass->name);
    m_out.Put(',');
    Value(record.oid);
    m_out.Put(',');
    m_out.Write(record.time);
}

void CsvWriter::Point(const PointRecord& point) {
    const ClassOutput& featureClass = *point.featureClass;
    Common(point);
    m_out.Put(',');
    Number(point.x, point.bFloatXY);
    m_out.Put(',');
    Number(point.y, point.bFloatXY);
    m_out.Put(',');
    Number(point.z, point.bFloatZ);
    if (m_bNativeCrs) {
        m_out.Put(',');
        Text(featureClass.nativeCrs);
    }
    for (const auto* value : point.values) {
        m_out.Put(',');
        Value(value);
    }
    m_out.Write("\r\n");
}

void CsvWriter::Profile(const ProfileRecord& profile) {
    for (const ProfileRecord::Row& row : profile.rows) {
        Text(profile.featureClass->name);
        m_out.Put(',');
        Value(profile.oid);
        m_out.Put(',');
        m_out.Write(row.time);
        m_out.Put(',');
        Number(profile.x, profile.bFloatXY);
        m_out.Put(',');
        Number(profile.y, profile.bFloatXY);
        m_out.Put(',');
        Number(row.z, false);
        if (m_bNativeCrs) {
            m_out.Put(',');
            Text(profile.featureClass->nativeCrs);
        }
        for (const auto* value : row.values) {
            m_out.Put(',');
            Value(value);
        }
        m_out.Write("\r\n");
    }
}

void CsvWriter::Trajectory(const TrajectoryRecord& trajectory) {
    for (const TrajectoryRecord::Vertex& vertex : trajectory.vertices) {
        Text(trajectory.featureClass->name);
        m_out.Put(',');
        Value(trajectory.oid);
        m_out.Put(',');
        m_out.Write(vertex.time);
        m_out.Put(',');
        Number(vertex.x, trajectory.bFloatXY);
        m_out.Put(',');
        Number(vertex.y, trajectory.bFloatXY);
        m_out.Put(',');
        Number(vertex.z, false);
        if (m_bNativeCrs) {
            m_out.Put(',');
            Text(trajectory.featureClass->nativeCrs);
        }
        for (const auto* value : vertex.values) {
            m_out.Put(',');
            Value(value);
        }
        m_out.Write("\r\n");
    }
}

void CsvWriter::End() {}

}  // namespace zdsg
