#include <zorvodsg/values/NcVariant.h>

#include <gtest/gtest.h>
#include <netcdf.h>

#include <cmath>
#include <limits>
#include <sstream>
#include <stdexcept>

#include "ValueTestHelpers.h"

namespace ZorvoDSG::System {
namespace {

std::string Streamed(const NcVariant& value) {
    std::ostringstream out;
    out << value;
    return out.str();
}

TEST(NcVariant, ToDoubleConvertsEveryNumberAndParsesText) {
    EXPECT_EQ(s_ToDouble(NcVariant(std::in_place_type<signed char>, -5)), -5.0);
    EXPECT_EQ(s_ToDouble(NcVariant(std::in_place_type<int32_t>, -70000)), -70000.0);
    EXPECT_EQ(s_ToDouble(NcVariant(std::in_place_type<uint32_t>, 4000000000u)), 4000000000.0);
    EXPECT_EQ(s_ToDouble(NcVariant(std::in_place_type<int64_t>, -(int64_t{1} << 40))), -1099511627776.0);
    // 2^63 and above stay positive.
    EXPECT_EQ(s_ToDouble(NcVariant(std::in_place_type<uint64_t>, uint64_t{1} << 63)), 9223372036854775808.0);
    EXPECT_EQ(s_ToDouble(NcVariant(1.5f)), 1.5);
    EXPECT_EQ(s_ToDouble(NcVariant(std::string(" 2.5e1"))), 25.0);
    EXPECT_EQ(s_ToDouble(NcVariant(std::string("7.5 m"))), 7.5);  // longest valid prefix
}

TEST(NcVariant, ToDoubleFailures) {
    EXPECT_TRUE(s_bEmpty(NcVariant()));
    EXPECT_FALSE(s_bEmpty(NcVariant(std::string())));
    EXPECT_THROWS_WHAT(s_ToDouble(NcVariant()), std::runtime_error, "s_ToDouble(NcVariant) failed");
    EXPECT_THROWS_WHAT(s_ToDouble(NcVariant(NcVariantArray())), std::runtime_error, "s_ToDouble(NcVariant) failed");
    EXPECT_THROWS_WHAT(s_ToDouble(NcVariant(std::string("abc"))), std::invalid_argument, "invalid stod argument");
    EXPECT_THROWS_WHAT(s_ToDouble(NcVariant(std::string(""))), std::invalid_argument, "invalid stod argument");
    EXPECT_THROWS_WHAT(s_ToDouble(NcVariant(std::string("1e999"))), std::out_of_range, "stod argument out of range");
}

TEST(NcVariant, ToScalarKeepsNumbersAndParsesText) {
    const NcScalar kept = NcVariantArray::s_ToScalar(NcVariant(std::in_place_type<short>, -999));
    ASSERT_EQ(kept.index(), eNcShort);
    EXPECT_EQ(std::get<short>(kept), -999);
    EXPECT_EQ(NcVariantArray::s_ToScalar(NcVariant()).index(), eNcEmpty);
    const NcScalar parsed = NcVariantArray::s_ToScalar(NcVariant(std::string("3")));
    ASSERT_EQ(parsed.index(), eNcDouble);
    EXPECT_EQ(std::get<double>(parsed), 3.0);
    EXPECT_THROWS_WHAT(NcVariantArray::s_ToScalar(NcVariant(NcVariantArray())), std::runtime_error,
                       "s_ToScalar(NcVariant) failed");
    EXPECT_THROWS_WHAT(NcVariantArray::s_ToScalar(NcVariant(std::string("x"))), std::invalid_argument,
                       "invalid stod argument");
}

TEST(NcVariant, ChangeTypeTruncatesTowardZero) {
    NcVariant value(3.9);
    s_ChangeType(value, NC_INT);
    ASSERT_EQ(value.index(), eNcInt);
    EXPECT_EQ(std::get<int32_t>(value), 3);

    value = -3.9;
    s_ChangeType(value, NC_INT);
    EXPECT_EQ(std::get<int32_t>(value), -3);

    value = std::string("300.7");
    s_ChangeType(value, NC_SHORT);
    EXPECT_EQ(std::get<short>(value), 300);

    value = NcVariant(std::in_place_type<short>, 7);
    s_ChangeType(value, NC_FLOAT);
    EXPECT_EQ(std::get<float>(value), 7.0f);

    value = 1e19;  // above 2^63
    s_ChangeType(value, NC_UINT64);
    EXPECT_EQ(std::get<uint64_t>(value), uint64_t{10000000000000000000u});

    value = -2.0;
    s_ChangeType(value, NC_INT64);
    EXPECT_EQ(std::get<int64_t>(value), -2);

    const std::pair<int, size_t> targets[] = {{NC_BYTE, eNcByte},     {NC_UBYTE, eNcUByte}, {NC_UINT, eNcUInt},
                                              {NC_DOUBLE, eNcDouble}, {NC_INT64, eNcInt64}, {NC_UINT64, eNcUInt64}};
    for (const auto& [type, index] : targets) {
        NcVariant v(42.0);
        s_ChangeType(v, type);
        EXPECT_EQ(v.index(), index) << type;
        EXPECT_EQ(s_ToDouble(v), 42.0) << type;
    }
}

TEST(NcVariant, ChangeTypeFailures) {
    for (const int type : {NC_CHAR, NC_USHORT, NC_STRING, 0, -1, 13}) {
        NcVariant value(1.0);
        EXPECT_THROWS_TEXT(s_ChangeType(value, type), "s_ChangeType failed");
    }
    NcVariant empty;
    EXPECT_THROWS_WHAT(s_ChangeType(empty, NC_INT), std::runtime_error, "s_ToDouble(NcVariant) failed");
    // Out-of-range values do not crash; they give some value of the target type.
    NcVariant huge(1e300);
    s_ChangeType(huge, NC_INT);
    EXPECT_EQ(huge.index(), eNcInt);
    NcVariant nan(std::numeric_limits<double>::quiet_NaN());
    s_ChangeType(nan, NC_SHORT);
    EXPECT_EQ(nan.index(), eNcShort);
}

TEST(NcVariant, ComparisonWithinOneAlternative) {
    EXPECT_TRUE(NcVariant() == NcVariant());
    EXPECT_TRUE(NcVariant(std::in_place_type<short>, 1) == NcVariant(std::in_place_type<short>, 1));
    EXPECT_TRUE(NcVariant(std::in_place_type<short>, 1) != NcVariant(std::in_place_type<short>, 2));
    EXPECT_TRUE(NcVariant(std::string("a\0b", 3)) != NcVariant(std::string("a")));
    const double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_FALSE(NcVariant(nan) == NcVariant(nan));
    EXPECT_INTERNAL_ERROR((void)(NcVariant(std::in_place_type<short>, 1) == NcVariant(std::in_place_type<int32_t>, 1)),
                          L"invalid NcVariant comparison");
    EXPECT_INTERNAL_ERROR((void)(NcVariant() != NcVariant(0.0)), L"invalid NcVariant comparison");
}

TEST(NcVariant, ArrayValuesCompareByTypeSizeAndElements) {
    NcVariantArray a(NC_INT, NcVariant(), 3, 1);
    a.SetSize(3);
    a.Data<int32_t>()[1] = 5;
    NcVariantArray b = a;
    EXPECT_TRUE(NcVariant(a) == NcVariant(b));
    b.Data<int32_t>()[2] = 1;
    EXPECT_FALSE(NcVariant(a) == NcVariant(b));
    b.SetSize(2);
    EXPECT_FALSE(NcVariant(a) == NcVariant(b));
    NcVariantArray c(NC_UINT, NcVariant(), 3, 1);
    c.SetSize(3);
    EXPECT_FALSE(NcVariant(a) == NcVariant(c));
}

TEST(NcVariant, Streaming) {
    EXPECT_EQ(Streamed(NcVariant()), "empty variant");
    EXPECT_EQ(Streamed(NcVariant(std::in_place_type<unsigned char>, 65)), "A");
    EXPECT_EQ(Streamed(NcVariant(std::in_place_type<signed char>, 66)), "B");
    EXPECT_EQ(Streamed(NcVariant(std::in_place_type<short>, -3)), "-3");
    EXPECT_EQ(Streamed(NcVariant(std::in_place_type<uint64_t>, 18446744073709551615u)), "18446744073709551615");
    EXPECT_EQ(Streamed(NcVariant(2.5)), "2.5");
    EXPECT_EQ(Streamed(NcVariant(std::string("a\0b", 3))), std::string("a\0b", 3));

    NcVariantArray array(NC_SHORT, NcVariant(std::in_place_type<short>, -1), 3, 1);
    array.SetSize(3);
    array.Data<short>()[0] = 1;
    array.Data<short>()[1] = -1;
    array.Data<short>()[2] = 3;
    EXPECT_EQ(Streamed(NcVariant(array)), "{1, empty variant, 3}");
    EXPECT_EQ(Streamed(NcVariant(NcVariantArray(NC_INT, NcVariant(), 0, 1))), "{}");
}

}  // namespace
}  // namespace ZorvoDSG::System
