#pragma once
// Checking ZorvoJSON text: it parses as strict JSON, no object repeats a key, and its values are
// what the cursor delivered.

#include <gtest/gtest.h>
#include <rapidjson/document.h>

#include <cmath>
#include <cstdint>
#include <set>
#include <string>
#include <type_traits>
#include <variant>

#include <zorvodsg/json/ValidUtf8.h>
#include <zorvodsg/json/ZorvoJSONWriter.h>
#include <zorvodsg/values/NcVariant.h>

namespace zorvojson_test {

inline std::string Text(const ZorvoDSG::ZorvoJSONBuffer& buffer) {
    return std::string(buffer.GetString(), buffer.GetSize());
}

inline void ExpectUniqueKeys(const rapidjson::Value& value) {
    if (value.IsObject()) {
        std::set<std::string> keys;
        for (const auto& member : value.GetObject()) {
            EXPECT_TRUE(keys.insert(member.name.GetString()).second) << "key twice: " << member.name.GetString();
            ExpectUniqueKeys(member.value);
        }
    } else if (value.IsArray()) {
        for (const auto& element : value.GetArray()) {
            ExpectUniqueKeys(element);
        }
    }
}

// Parsed with UTF-8 validation; a parse error fails the test and leaves the document null.
inline rapidjson::Document Parse(const std::string& text) {
    rapidjson::Document document;
    document.Parse<rapidjson::kParseValidateEncodingFlag | rapidjson::kParseFullPrecisionFlag>(text.data(),
                                                                                                 text.size());
    EXPECT_FALSE(document.HasParseError()) << "offset " << document.GetErrorOffset() << " in " << text.substr(0, 2000);
    if (document.HasParseError()) {
        document.SetNull();
    } else {
        ExpectUniqueKeys(document);
    }
    return document;
}

// A coordinate: the number, or null when it is missing.
inline void ExpectCoordinate(const rapidjson::Value& json, double value) {
    if (std::isfinite(value)) {
        ASSERT_TRUE(json.IsNumber());
        EXPECT_EQ(json.GetDouble(), value);
    } else {
        EXPECT_TRUE(json.IsNull());
    }
}

// A value as the document must hold it.
inline void ExpectValue(const rapidjson::Value& json, const ZorvoDSG::System::NcVariant& value) {
    std::visit(
        [&json](const auto& v) {
            using T = std::decay_t<decltype(v)>;
            if constexpr (std::is_same_v<T, std::monostate>) {
                EXPECT_TRUE(json.IsNull());
            } else if constexpr (std::is_same_v<T, std::string>) {
                if (!v.empty() && v.find_first_not_of('\0') == std::string::npos) {
                    EXPECT_TRUE(json.IsNull());
                } else {
                    ASSERT_TRUE(json.IsString());
                    EXPECT_EQ(std::string(json.GetString(), json.GetStringLength()), ZorvoDSG::ValidUtf8(v));
                }
            } else if constexpr (std::is_floating_point_v<T>) {
                ExpectCoordinate(json, static_cast<double>(v));
            } else if constexpr (std::is_same_v<T, uint64_t> || std::is_same_v<T, uint32_t>) {
                ASSERT_TRUE(json.IsUint64());
                EXPECT_EQ(json.GetUint64(), v);
            } else if constexpr (std::is_integral_v<T>) {
                ASSERT_TRUE(json.IsInt64());
                EXPECT_EQ(json.GetInt64(), v);
            } else {
                ADD_FAILURE() << "an array as instance value";
            }
        },
        value);
}

}  // namespace zorvojson_test
