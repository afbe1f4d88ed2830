// A document cut short between two values must still parse once its open levels are closed.

#include <gtest/gtest.h>
#include <rapidjson/document.h>

#include <string>

#include <zorvodsg/json/CloseOpenLevels.h>

namespace {

std::string Closed(void (*write)(ZorvoDSG::ZorvoJSONWriter&)) {
    ZorvoDSG::ZorvoJSONBuffer buffer;
    ZorvoDSG::ZorvoJSONWriter writer(buffer);
    write(writer);
    ZorvoDSG::CloseOpenLevels(writer);
    EXPECT_TRUE(writer.IsComplete());
    return std::string(buffer.GetString(), buffer.GetSize());
}

TEST(CloseOpenLevelsTest, EndsNestedArraysAndObjects) {
    EXPECT_EQ(Closed([](ZorvoDSG::ZorvoJSONWriter& w) {
                  w.StartObject();
                  w.Key("features");
                  w.StartArray();
                  w.StartObject();
                  w.Key("a");
                  w.Int(1);
              }),
              R"({"features":[{"a":1}]})");
}

TEST(CloseOpenLevelsTest, GivesAKeyWithoutValueNull) {
    const std::string text = Closed([](ZorvoDSG::ZorvoJSONWriter& w) {
        w.StartArray();
        w.StartObject();
        w.Key("geometry");
    });
    EXPECT_EQ(text, R"([{"geometry":null}])");
    rapidjson::Document document;
    EXPECT_FALSE(document.Parse(text.c_str()).HasParseError());
}

TEST(CloseOpenLevelsTest, LeavesACompleteDocumentAlone) {
    EXPECT_EQ(Closed([](ZorvoDSG::ZorvoJSONWriter& w) {
                  w.StartArray();
                  w.EndArray();
              }),
              "[]");
}

}  // namespace
