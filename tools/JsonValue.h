#pragma once
// Values as JSON through any RapidJSON writer: one conversion for the inspect report and the
// features output. Texts are made valid UTF-8; numbers are written with the shortest digits that
// read back as the same value of their own type (a float 0.01 as 0.01, not 0.009999999776482582);
// NaN and infinities, which JSON cannot hold, become texts or null.

#include <rapidjson/rapidjson.h>

#include <cmath>
#include <string>
#include <string_view>
#include <type_traits>
#include <variant>

#include "Names.h"
#include <zorvodsg/values/NcVariant.h>

namespace zdsg {

enum class eNonFinite {
    eAsText,  // "NaN", "Infinity", "-Infinity": the inspect report shows what the file holds
    eAsNull,  // null: features carry no value there
};

template <class Writer>
void WriteJsonString(Writer& w, std::string_view text) {
    if (ZorvoDSG::bValidUtf8(text)) {
        w.String(text.data(), static_cast<rapidjson::SizeType>(text.size()));
        return;
    }
    const std::string valid = ValidUtf8(text);
    w.String(valid.data(), static_cast<rapidjson::SizeType>(valid.size()));
}

template <class Writer, typename T>
void WriteJsonNumber(Writer& w, T value, eNonFinite policy) {
    static_assert(std::is_floating_point_v<T>);
    if (std::isfinite(value)) {
        char buffer[kNumberCapacity];
        w.RawValue(buffer, FormatNumber(value, buffer), rapidjson::kNumberType);
    } else if (policy == eNonFinite::eAsText) {
        WriteJsonString(w, NumberText(value));
    } else {
        w.Null();
    }
}

template <class Writer>
void WriteJsonValue(Writer& w, const ZorvoDSG::System::NcVariant& value, eNonFinite policy) {
    std::visit(
        [&w, policy](const auto& v) {
            using T = std::decay_t<decltype(v)>;
            if constexpr (std::is_same_v<T, std::monostate>) {
                w.Null();
            } else if constexpr (std::is_same_v<T, std::string>) {
                WriteJsonString(w, v);
            } else if constexpr (std::is_same_v<T, ZorvoDSG::System::NcVariantArray>) {
                w.StartArray();
                for (size_t i = 0; i < v.Size(); ++i) {
                    WriteJsonValue(w, v[i], policy);
                }
                w.EndArray();
            } else if constexpr (std::is_floating_point_v<T>) {
                WriteJsonNumber(w, v, policy);
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

}  // namespace zdsg
