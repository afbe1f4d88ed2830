// Field objects of variables: the type a cursor delivers, and failures before any text.
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

#include "NcFileTestSupport.h"

namespace {

using ZorvoDSG::Variable;
using ZorvoDSG::ZorvoJSONBuffer;
using ZorvoDSG::ZorvoJSONWriter;
using namespace ncfile_test;

std::string Field(const Variable& variable) {
    ZorvoJSONBuffer buffer;
    ZorvoJSONWriter writer(buffer);
    variable.ToZorvoJSON(writer);
    return buffer.GetString();
}

std::string FieldOf(const std::string& file, const std::string& name) {
    auto dataset = OpenOne(file);
    return dataset ? Field(dataset->GetVariable(name)) : "no dataset";
}

}  // namespace

TEST(VariableZorvoJSONTest, FieldTypeOfEachClassicType) {
    const std::string file = "zorvojson_profiles.nc";
    EXPECT_EQ(FieldOf(file, "profile_id"), R"({"name":"profile_id","type":"zorvoFieldTypeOID"})");
    EXPECT_EQ(FieldOf(file, "b"), R"({"name":"b","type":"zorvoFieldTypeSmallInteger"})");
    EXPECT_EQ(FieldOf(file, "s"), R"({"name":"s","type":"zorvoFieldTypeSmallInteger"})");
    EXPECT_EQ(FieldOf(file, "i"), R"({"name":"i","type":"zorvoFieldTypeInteger"})");
    EXPECT_EQ(FieldOf(file, "f"), R"({"name":"f","type":"zorvoFieldTypeSingle"})");
    EXPECT_EQ(FieldOf(file, "d"), R"({"name":"d","type":"zorvoFieldTypeDouble"})");
    EXPECT_EQ(FieldOf(file, "name"), R"({"name":"name","type":"zorvoFieldTypeString","length":6})");
    EXPECT_EQ(FieldOf(file, "flag"), R"({"name":"flag","type":"zorvoFieldTypeString"})");
}

TEST(VariableZorvoJSONTest, PackedFieldsAreTypedAsTheCursorDeliversThem) {
    // A short scaled by a float is delivered as a double; an int scaled by an int stays an int.
    EXPECT_EQ(FieldOf("zorvojson_profiles.nc", "packed"), R"({"name":"packed","type":"zorvoFieldTypeDouble"})");
    EXPECT_EQ(FieldOf("zorvojson_profiles.nc", "packed_int"), R"({"name":"packed_int","type":"zorvoFieldTypeInteger"})");
}

TEST(VariableZorvoJSONTest, NetCDF4Types) {
    const std::string file = "zorvojson_types.nc";
    EXPECT_EQ(FieldOf(file, "station_id"), R"({"name":"station_id","type":"zorvoFieldTypeOID"})");
    EXPECT_EQ(FieldOf(file, "ub"), R"({"name":"ub","type":"zorvoFieldTypeSmallInteger"})");
    EXPECT_EQ(FieldOf(file, "ui"), R"({"name":"ui","type":"zorvoFieldTypeInteger"})");
    EXPECT_EQ(FieldOf(file, "i64"), R"({"name":"i64","type":"zorvoFieldTypeBigInteger"})");
    EXPECT_EQ(FieldOf(file, "u64"), R"({"name":"u64","type":"zorvoFieldTypeBigInteger"})");
    EXPECT_EQ(FieldOf(file, "label"), R"({"name":"label","type":"zorvoFieldTypeString","length":255})");
}

TEST(VariableZorvoJSONTest, AVariableWithoutTypeFailsBeforeWriting) {
    // (Files with NC_USHORT variables are refused when opened, so no field of that type exists.)
    ZorvoJSONBuffer buffer;
    ZorvoJSONWriter writer(buffer);
    writer.StartArray();
    try {
        Variable::s_EmptyVariable().ToZorvoJSON(writer);
        ADD_FAILURE() << "no error";
    } catch (const std::runtime_error& e) {
        EXPECT_STREQ(e.what(), "invalid type for variable");
    }
    EXPECT_STREQ(buffer.GetString(), "[");
}

TEST(VariableZorvoJSONTest, ValuesAreWrittenByWhatTheyHoldNotByTheStoredType) {
    // A packed short is delivered as a double, a fill value as empty: neither may break the text.
    auto dataset = OpenOne("zorvojson_profiles.nc");
    ASSERT_TRUE(dataset);
    const Variable& packed = dataset->GetVariable("packed");
    ZorvoJSONBuffer buffer;
    ZorvoJSONWriter writer(buffer);
    writer.StartArray();
    packed.ValueToZorvoJSON(packed.Unpack(ZorvoDSG::System::NcVariant(static_cast<short>(3))), writer);
    packed.ValueToZorvoJSON(ZorvoDSG::System::NcVariant(), writer);
    writer.EndArray();
    EXPECT_STREQ(buffer.GetString(), "[2.5,null]");
}
