// The primitives that keep every ZorvoJSON document valid, whatever the values.
#include <gtest/gtest.h>

#include <netcdf.h>
#include <rapidjson/document.h>

#include <cmath>
#include <cstdint>
#include <functional>
#include <limits>
#include <string>

#include <zorvodsg/host/Utf8.h>
#include <zorvodsg/json/JSONKeyGuard.h>
#include <zorvodsg/json/JSONObjectKeys.h>
#include <zorvodsg/json/ValidUtf8.h>
#include <zorvodsg/json/ZorvoJSONValues.h>

using namespace ZorvoDSG;
using System::NcVariant;

namespace {

// What the primitive writes, as the one element of an array: a separator is written before it, the
// case where RapidJSON leaves broken text behind when it refuses a value.
std::string InArray(const std::function<void(ZorvoJSONWriter&)>& write) {
    ZorvoJSONBuffer buffer;
    ZorvoJSONWriter writer(buffer);
    writer.StartArray();
    writer.Int(0);
    write(writer);
    writer.EndArray();
    EXPECT_TRUE(writer.IsComplete());
    return std::string(buffer.GetString(), buffer.GetSize());
}

std::string Value(const NcVariant& value) {
    return InArray([&](ZorvoJSONWriter& w) { WriteJSONValue(w, value); });
}

bool bParses(const std::string& text) {
    rapidjson::Document document;
    document.Parse<rapidjson::kParseValidateEncodingFlag>(text.data(), text.size());
    return !document.HasParseError();
}

}  // namespace

TEST(ValidUtf8Test, AgreesWithTheDecoderOnEveryShortSequence) {
    // bValidUtf8 is the fast test in front of the decoder's replacement: they must agree.
    const auto check = [](const std::string& s) {
        const bool bRoundTrips = Host::WideToUtf8(Host::Utf8ToWide(s)) == s;
        ASSERT_EQ(bValidUtf8(s), bRoundTrips) << std::hex << static_cast<int>(static_cast<unsigned char>(s[0]));
    };
    for (int a = 0; a < 256; ++a) {
        for (int b = 0; b < 256; ++b) {
            check({static_cast<char>(a), static_cast<char>(b)});
        }
    }
    for (int a = 0xE0; a <= 0xF4; ++a) {
        for (int b = 0x70; b < 0xD0; ++b) {
            check({static_cast<char>(a), static_cast<char>(b), '\x80'});
            check({static_cast<char>(a), static_cast<char>(b), '\x80', '\xBF'});
        }
    }
}

TEST(ValidUtf8Test, ReplacesEachMalformedByte) {
    EXPECT_EQ(ValidUtf8("caf\xC3\xA9"), "caf\xC3\xA9");
    EXPECT_EQ(ValidUtf8("a\xFF" "b"), "a\xEF\xBF\xBD" "b");
    EXPECT_EQ(ValidUtf8("\xC0\xAF"), "\xEF\xBF\xBD\xEF\xBF\xBD");          // overlong '/'
    EXPECT_EQ(ValidUtf8("\xED\xA0\x80"), "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD");  // surrogate
    EXPECT_EQ(ValidUtf8("x\xE2\x82"), "x\xEF\xBF\xBD\xEF\xBF\xBD");         // cut short
}

TEST(ZorvoJSONValuesTest, NonFiniteNumbersAreNull) {
    EXPECT_EQ(InArray([](ZorvoJSONWriter& w) { WriteJSONDouble(w, std::nan("")); }), "[0,null]");
    EXPECT_EQ(Value(std::numeric_limits<double>::infinity()), "[0,null]");
    EXPECT_EQ(Value(-std::numeric_limits<float>::infinity()), "[0,null]");
    EXPECT_EQ(Value(std::numeric_limits<float>::quiet_NaN()), "[0,null]");
    EXPECT_EQ(Value(1.5), "[0,1.5]");
}

TEST(ZorvoJSONValuesTest, ValuesByTheirAlternative) {
    EXPECT_EQ(Value(NcVariant{}), "[0,null]");
    EXPECT_EQ(Value(static_cast<signed char>(-128)), "[0,-128]");
    EXPECT_EQ(Value(static_cast<unsigned char>(255)), "[0,255]");
    EXPECT_EQ(Value(static_cast<short>(-32768)), "[0,-32768]");
    EXPECT_EQ(Value(std::numeric_limits<int32_t>::min()), "[0,-2147483648]");
    EXPECT_EQ(Value(std::numeric_limits<uint32_t>::max()), "[0,4294967295]");
    EXPECT_EQ(Value(std::numeric_limits<int64_t>::min()), "[0,-9223372036854775808]");
    EXPECT_EQ(Value(std::numeric_limits<uint64_t>::max()), "[0,18446744073709551615]");
    // A float is written as the double nearest to it.
    EXPECT_EQ(Value(0.1f), "[0,0.10000000149011612]");
}

TEST(ZorvoJSONValuesTest, TextsStayValidJson) {
    EXPECT_EQ(Value(std::string("bad\xFF")), "[0,\"bad\xEF\xBF\xBD\"]");
    EXPECT_EQ(Value(std::string("t\tb\n\x01\"\\")), "[0,\"t\\tb\\n\\u0001\\\"\\\\\"]");
    EXPECT_EQ(Value(std::string("")), "[0,\"\"]");
    // A NUL character is the fill of a character variable: no text.
    EXPECT_EQ(Value(std::string(1, '\0')), "[0,null]");
    EXPECT_EQ(Value(std::string(3, '\0')), "[0,null]");
    EXPECT_EQ(Value(std::string("a\0b", 3)), "[0,\"a\\u0000b\"]");
}

TEST(ZorvoJSONValuesTest, ComposedTextTakesItsPlaceAmongTheWritersValues) {
    const std::string text = InArray([](ZorvoJSONWriter& w) {
        WriteJSONRaw(w, "[1.5,null]", rapidjson::kArrayType);
        w.StartObject();
        WriteJSONPlainKey(w, "a");
        WriteJSONRaw(w, "{}", rapidjson::kObjectType);
        WriteJSONPlainKey(w, "b");
        w.Int(2);
        w.EndObject();
        char number[kJSONDoubleChars];
        WriteJSONRaw(w, std::string_view(number, FormatJSONDouble(-1e300, number)), rapidjson::kNumberType);
        WriteJSONRaw(w, std::string_view(number, FormatJSONDouble(std::nan(""), number)), rapidjson::kNullType);
    });
    EXPECT_EQ(text, R"([0,[1.5,null],{"a":{},"b":2},-1e300,null])");
}

TEST(JSONObjectKeysTest, KeysMadeOnceValidAndWithoutRepeats) {
    const JSONObjectKeys keys({"plain", "k\xFE", "q\"\n", "plain"});
    ASSERT_EQ(keys.Size(), 4u);
    EXPECT_FALSE(keys.bWritten(3));
    const std::vector<NcVariant> values = {NcVariant(0), NcVariant(1), NcVariant(2), NcVariant(3)};
    const std::string text = InArray([&](ZorvoJSONWriter& w) {
        keys.AppendObject(StartJSONRaw(w, rapidjson::kObjectType), values);
    });
    EXPECT_EQ(text, "[0,{\"plain\":0,\"k\xEF\xBF\xBD\":1,\"q\\\"\\n\":2}]");
    EXPECT_TRUE(bParses(text));
}

TEST(ZorvoJSONValuesTest, ArraysElementByElement) {
    System::NcVariantArray floats(NC_FLOAT, -1.0f, 3, 1);
    floats.SetSize(3);
    floats.Data<float>()[0] = 0.5f;
    floats.Data<float>()[1] = -1.0f;  // the fill value: empty
    floats.Data<float>()[2] = std::numeric_limits<float>::infinity();
    EXPECT_EQ(Value(NcVariant(floats)), "[0,[0.5,null,null]]");
}

TEST(JSONKeyGuardTest, EachKeyOnceAlsoPastTheShortList) {
    std::vector<std::string> keys;
    for (int i = 0; i < 40; ++i) {
        keys.push_back("k" + std::to_string(i));
    }
    JSONKeyGuard guard;
    for (const auto& key : keys) {
        EXPECT_TRUE(guard.bFirst(key));
    }
    for (const auto& key : keys) {
        EXPECT_FALSE(guard.bFirst(key)) << key;
    }
    EXPECT_TRUE(guard.bFirst("new"));
}

TEST(ZorvoJSONValuesTest, ComposedValuesReadAsTheWriterWritesThem) {
    System::NcVariantArray shorts(NC_SHORT, NcVariant(short{-9}), 2, 1);
    shorts.SetSize(2);
    shorts.Data<short>()[0] = 7;
    shorts.Data<short>()[1] = -9;
    const NcVariant values[] = {
        NcVariant(), NcVariant(static_cast<unsigned char>(255)), NcVariant(static_cast<signed char>(-128)),
        NcVariant(short{-32768}), NcVariant(std::numeric_limits<int32_t>::min()),
        NcVariant(std::numeric_limits<uint32_t>::max()), NcVariant(std::numeric_limits<int64_t>::min()),
        NcVariant(std::numeric_limits<uint64_t>::max()), NcVariant(0.1f), NcVariant(-1e-300), NcVariant(1e300),
        NcVariant(4.0), NcVariant(std::nan("")), NcVariant(-std::numeric_limits<float>::infinity()),
        NcVariant(std::string("ST000123")), NcVariant(std::string("a")), NcVariant(std::string("exactly16chars!!")),
        NcVariant(std::string(3, '\0')), NcVariant(std::string("q\"\\\n")), NcVariant(std::string("caf\xC3\xA9")),
        NcVariant(std::string("k\xFE")), NcVariant(std::string()), NcVariant(shorts)};
    for (const NcVariant& value : values) {
        const std::string composed = InArray([&value](ZorvoJSONWriter& w) {
            AppendJSONValue(StartJSONRaw(w, rapidjson::kNumberType), value);
        });
        EXPECT_EQ(composed, Value(value)) << value.index();
        EXPECT_TRUE(bParses(composed)) << composed;
    }
}

TEST(JSONObjectKeysTest, ComposedObjectSkipsRepeatsAndNullsMissingValues) {
    const JSONObjectKeys keys({"plain", "plain", "k\xFE", "last"});
    const std::vector<NcVariant> values = {NcVariant(1), NcVariant(2), NcVariant(std::string("x"))};
    const std::string text = InArray([&](ZorvoJSONWriter& w) {
        keys.AppendObject(StartJSONRaw(w, rapidjson::kObjectType), values);
        w.Int(3);  // the writer goes on after the composed value
    });
    EXPECT_EQ(text, "[0,{\"plain\":1,\"k\xEF\xBF\xBD\":\"x\",\"last\":null},3]");
    EXPECT_TRUE(bParses(text));
    const JSONObjectKeys none({});
    EXPECT_EQ(InArray([&](ZorvoJSONWriter& w) { none.AppendObject(StartJSONRaw(w, rapidjson::kObjectType), {}); }),
              "[0,{}]");
}
