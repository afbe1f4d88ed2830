#include <zorvodsg/values/NcVariantArray.h>

#include <gtest/gtest.h>
#include <netcdf.h>

#include <climits>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <new>
#include <string>
#include <variant>

#include "ValueTestHelpers.h"
#include <zorvodsg/values/NcTypeDispatch.h>

namespace ZorvoDSG::System {
namespace {

const int kAllTypes[] = {NC_BYTE, NC_CHAR,  NC_SHORT, NC_INT,   NC_FLOAT,  NC_DOUBLE,
                         NC_UBYTE, NC_UINT, NC_INT64, NC_UINT64, NC_STRING};

NcVariantArray Shorts(std::initializer_list<short> values, const NcVariant& fill) {
    NcVariantArray array(NC_SHORT, fill, static_cast<long>(values.size()), 1);
    array.SetSize(static_cast<long>(values.size()));
    std::copy(values.begin(), values.end(), array.Data<short>());
    return array;
}

// Fills slot i of any array with a value derived from i + seed, by element type.
void FillSlots(NcVariantArray& array, int seed) {
    const auto base = static_cast<size_t>(seed);
    for (size_t i = 0; i < array.Reserved(); ++i) {
        VisitNcType(
            array.ElementType(),
            [&]<typename T>(NcTypeTag<T>) {
                if constexpr (std::is_same_v<T, std::string>) {
                    array.Data<std::string>()[i] = "text " + std::to_string(i + base);
                } else if constexpr (std::is_same_v<T, NcCharSlot>) {
                    std::memset(array.Data<char>() + i * array.StringWidth(), 'a' + static_cast<int>((i + base) % 26),
                                array.StringWidth());
                } else {
                    array.Data<T>()[i] = static_cast<T>(i + base);
                }
            },
            [] { FAIL(); });
    }
}

TEST(NcVariantArray, DefaultStateAndItsCopy) {
    NcVariantArray array;
    EXPECT_TRUE(array.bEmpty());
    EXPECT_EQ(array.StringWidth(), 1u);
    EXPECT_EQ(array.ElementType(), 0);
    EXPECT_EQ(array.Data<void>(), nullptr);
    EXPECT_EQ(array.FillValue().index(), eNcEmpty);
    EXPECT_INTERNAL_ERROR(NcVariantArray copy(array), L"netcdf array type not implemented as an element");
    NcVariantArray moved(std::move(array));  // moves never fail
    EXPECT_EQ(moved.ElementType(), 0);
}

TEST(NcVariantArray, ReservationGrowsOnlyAndSizeStaysWithin) {
    NcVariantArray array = Shorts({1, 2, 3}, NcVariant());
    EXPECT_EQ(reinterpret_cast<uintptr_t>(array.Data<void>()) % 16, 0u);
    array.SetReserved(2);
    array.SetReserved(3);
    EXPECT_EQ(array.Size(), 3u);
    EXPECT_EQ(std::get<short>(array[2]), 3);

    array.SetReserved(10);
    EXPECT_EQ(array.Size(), 0u);
    EXPECT_EQ(array.Reserved(), 10u);
    array.SetSize(10);
    EXPECT_INTERNAL_ERROR(array.SetSize(11), L"invalid use of NcVariantArray");
    EXPECT_INTERNAL_ERROR(array.SetSize(-1), L"invalid use of NcVariantArray");

    array.SetEmpty();
    EXPECT_EQ(array.Reserved(), 0u);
    EXPECT_EQ(array.Data<void>(), nullptr);
    EXPECT_EQ(array.ElementType(), NC_SHORT);
}

TEST(NcVariantArray, UnsupportedTypesAndAbsurdSizes) {
    NcVariantArray ushorts(NC_USHORT, NcVariant(), 0, 1);
    EXPECT_INTERNAL_ERROR(ushorts.SetReserved(4), L"netcdf array type not implemented");
    EXPECT_EQ(ushorts.Reserved(), 4u);
    EXPECT_EQ(ushorts.Data<void>(), nullptr);
    ushorts.SetSize(1);
    EXPECT_INTERNAL_ERROR(ushorts[0], L"netcdf array type not implemented as element type for NcVariantArray");
    EXPECT_INTERNAL_ERROR(ushorts.Unpack(NC_USHORT, NcVariant(), NcVariant()), L"unsupported type for unpacking");
    EXPECT_INTERNAL_ERROR(ushorts.Unpack(NC_DOUBLE, 1.0, 0.0), L"unsupported type for unpacking and expanding");

    for (const int type : kAllTypes) {
        NcVariantArray array(type, NcVariant(), 1, 8);
        EXPECT_THROW(array.SetReserved(LONG_MAX), std::bad_alloc) << type;
        EXPECT_EQ(array.Reserved(), 0u);
        EXPECT_EQ(array.Data<void>(), nullptr);
        EXPECT_THROW(array.SetReserved(LONG_MAX / 2 + 1), std::bad_alloc) << type;
    }
    EXPECT_THROW(NcVariantArray(NC_CHAR, NcVariant(), 2, LONG_MAX), std::bad_alloc);
    EXPECT_INTERNAL_ERROR(NcVariantArray(NC_CHAR, NcVariant(), 2, -1), L"invalid use of NcVariantArray");
    NcVariantArray shorts(NC_SHORT, NcVariant(), 2, 1);
    EXPECT_INTERNAL_ERROR(shorts.ReInit(-1, NC_SHORT, NcVariant()), L"invalid use of NcVariantArray");
    shorts.SetReserved(-5);  // not more than reserved: nothing happens
    EXPECT_EQ(shorts.Reserved(), 2u);
}

TEST(NcVariantArray, IndexingChecksBoundsAndHidesFill) {
    const NcVariantArray array = Shorts({1, -999, 3}, NcVariant(std::in_place_type<short>, -999));
    EXPECT_EQ(std::get<short>(array[0]), 1);
    EXPECT_EQ(array[1].index(), eNcEmpty);
    EXPECT_INTERNAL_ERROR(array[3], L"bad index in NcVariantArray");
    EXPECT_INTERNAL_ERROR(array[-1], L"bad index in NcVariantArray");

    const NcVariantArray wrongFill = Shorts({1}, NcVariant(std::in_place_type<int32_t>, 1));
    EXPECT_THROW(wrongFill[0], std::bad_variant_access);

    NcVariantArray floats(NC_FLOAT, NcVariant(std::numeric_limits<float>::quiet_NaN()), 2, 1);
    floats.SetSize(2);
    floats.Data<float>()[0] = std::numeric_limits<float>::quiet_NaN();
    floats.Data<float>()[1] = 2.0f;
    ASSERT_EQ(floats[0].index(), eNcFloat);  // a NaN fill hides nothing
    EXPECT_TRUE(std::isnan(std::get<float>(floats[0])));
    EXPECT_EQ(std::get<float>(floats[1]), 2.0f);
}

TEST(NcVariantArray, CharElements) {
    NcVariantArray raw(NC_CHAR, NcVariant(), 2, 4);
    raw.SetSize(2);
    std::memcpy(raw.Data<char>(), "ab\0\0wxyz", 8);
    EXPECT_EQ(std::get<std::string>(raw[0]), std::string("ab\0\0", 4));
    EXPECT_EQ(std::get<std::string>(raw[1]), "wxyz");

    // With a text fill value slots are cut at their first zero byte; the empty fill marks blank slots.
    NcVariantArray filled(NC_CHAR, NcVariant(std::string()), 3, 4);
    filled.SetSize(3);
    std::memcpy(filled.Data<char>(), "ab\0\0\0\0\0\0xy\0z", 12);
    EXPECT_EQ(std::get<std::string>(filled[0]), "ab");
    EXPECT_EQ(filled[1].index(), eNcEmpty);
    EXPECT_EQ(std::get<std::string>(filled[2]), "xy");
    ASSERT_EQ(filled.FillValue().index(), eNcString);

    NcVariantArray named(NC_CHAR, NcVariant(std::string("xy")), 1, 4);
    named.SetSize(1);
    std::memcpy(named.Data<char>(), "xy\0q", 4);
    EXPECT_EQ(named[0].index(), eNcEmpty);
    NcVariantArray target;
    target = std::move(named);  // the emptied source keeps its fill value
    EXPECT_EQ(std::get<std::string>(named.FillValue()), "xy");
    EXPECT_EQ(target[0].index(), eNcEmpty);

    NcVariantArray numericFill(NC_CHAR, NcVariant(0.0), 1, 4);
    numericFill.SetSize(1);
    EXPECT_THROW(numericFill[0], std::bad_variant_access);
}

TEST(NcVariantArray, StringElementsIgnoreFill) {
    NcVariantArray array(NC_STRING, NcVariant(std::string()), 3, 1);
    array.SetSize(2);
    array.Data<std::string>()[0] = "";
    array.Data<std::string>()[1] = std::string(100, 'z');  // beyond the small-string buffer
    EXPECT_EQ(std::get<std::string>(array[0]), "");
    EXPECT_EQ(std::get<std::string>(array[1]), std::string(100, 'z'));
    EXPECT_THROWS_TEXT(array.Unpack(NC_STRING, NcVariant(), NcVariant()), "cannot unpack strings");
    EXPECT_THROWS_TEXT(array.Unpack(NC_DOUBLE, 1.0, 0.0), "cannot unpack strings");
    // Scale and offset are read as numbers before the element type is looked at.
    EXPECT_THROWS_WHAT(array.Unpack(NC_DOUBLE, NcVariant(), 0.0), std::runtime_error, "s_ToDouble(NcVariant) failed");
    EXPECT_EQ(std::get<std::string>(array[1]), std::string(100, 'z'));
}

TEST(NcVariantArray, CopyAndMoveOfEveryElementType) {
    for (const int type : kAllTypes) {
        SCOPED_TRACE(type);
        NcVariantArray source(type, NcVariant(), 5, 3);
        FillSlots(source, 1);
        source.SetSize(4);
        NcVariantArray copy(source);
        EXPECT_EQ(copy.ElementType(), type);
        EXPECT_EQ(copy.Size(), 4u);
        EXPECT_EQ(copy.Reserved(), 5u);
        EXPECT_EQ(copy.StringWidth(), 3u);
        EXPECT_NE(copy.Data<void>(), source.Data<void>());
        EXPECT_TRUE(NcVariant(copy) == NcVariant(source));
        copy.SetSize(5);
        source.SetSize(5);
        EXPECT_TRUE(NcVariant(copy) == NcVariant(source)) << "all reserved slots are copied";

        FillSlots(copy, 7);  // independent of the source
        EXPECT_FALSE(NcVariant(copy) == NcVariant(source));

        NcVariantArray assigned;
        assigned = copy;
        assigned = assigned;
        EXPECT_TRUE(NcVariant(assigned) == NcVariant(copy));

        const void* buffer = copy.Data<void>();
        NcVariantArray moved(std::move(copy));
        EXPECT_EQ(moved.Data<void>(), buffer);
        EXPECT_EQ(copy.Data<void>(), nullptr);
        EXPECT_TRUE(copy.bEmpty());
        EXPECT_EQ(copy.Reserved(), 0u);
        EXPECT_TRUE(NcVariant(moved) == NcVariant(assigned));

        source = std::move(moved);
        EXPECT_EQ(source.Data<void>(), buffer);
        EXPECT_EQ(moved.Data<void>(), nullptr);
        EXPECT_TRUE(NcVariant(source) == NcVariant(assigned));
    }
}

TEST(NcVariantArray, ReInitRetypesTheReservation) {
    NcVariantArray array(NC_DOUBLE, NcVariant(), 4, 1);
    const void* buffer = array.Data<void>();
    array.ReInit(3, NC_SHORT, NcVariant(std::in_place_type<short>, -1));
    EXPECT_EQ(array.Data<void>(), buffer);  // a smaller type reuses the buffer
    EXPECT_EQ(array.ElementType(), NC_SHORT);
    EXPECT_EQ(array.Size(), 3u);
    EXPECT_EQ(std::get<short>(array.FillValue()), -1);
    EXPECT_THROWS_TEXT(array.ReInit(1, NC_DOUBLE, NcVariant()), "cannot reinit with larger packed type");
    EXPECT_INTERNAL_ERROR(array.ReInit(5, NC_SHORT, NcVariant()), L"invalid use of NcVariantArray");
    array.ReInit(2, NC_SHORT, NcVariant(std::string("7")));  // text fill values stay text
    EXPECT_EQ(std::get<std::string>(array.FillValue()), "7");
    EXPECT_THROW(array.ReInit(2, NC_SHORT, NcVariant(NcVariantArray())), std::runtime_error);

    // Codes do not order widths: NC_UBYTE (7) -> NC_DOUBLE (6) must still fit 8 bytes per slot.
    NcVariantArray bytes(NC_UBYTE, NcVariant(), 100, 1);
    bytes.ReInit(100, NC_DOUBLE, NcVariant());
    bytes.Data<double>()[99] = 1.0;
    EXPECT_EQ(std::get<double>(bytes[99]), 1.0);

    NcVariantArray strings(NC_STRING, NcVariant(), 3, 1);
    strings.Data<std::string>()[0] = std::string(50, 's');
    strings.ReInit(3, NC_INT, NcVariant());
    EXPECT_EQ(std::get<int32_t>(strings[2]), 0);
    NcVariantArray chars(NC_STRING, NcVariant(), 3, 6);
    chars.ReInit(3, NC_CHAR, NcVariant(std::string()));
    std::memcpy(chars.Data<char>() + 12, "abcdef", 6);
    EXPECT_EQ(std::get<std::string>(chars[2]), "abcdef");

    NcVariantArray uints(NC_UINT, NcVariant(), 1, 1);
    EXPECT_INTERNAL_ERROR(uints.ReInit(1, NC_USHORT, NcVariant()), L"netcdf array type not implemented");
    EXPECT_EQ(uints.ElementType(), NC_UINT);
}

TEST(NcVariantArray, UnpackInPlaceInTheElementType) {
    NcVariantArray array = Shorts({1, -999, 3}, NcVariant(std::in_place_type<short>, -999));
    array.Unpack(NC_SHORT, NcVariant(std::in_place_type<short>, 2), NcVariant(std::in_place_type<short>, 10));
    EXPECT_EQ(array.Data<short>()[0], 12);
    EXPECT_EQ(array.Data<short>()[1], -999);
    EXPECT_EQ(array.Data<short>()[2], 16);
    EXPECT_EQ(std::get<short>(array[0]), 12);
    EXPECT_EQ(array[1].index(), eNcEmpty);

    NcVariantArray noFill = Shorts({1, -999}, NcVariant());
    noFill.Unpack(NC_SHORT, NcVariant(std::in_place_type<short>, 1), NcVariant(std::in_place_type<short>, 1));
    EXPECT_EQ(noFill.Data<short>()[1], -998);

    NcVariantArray wrapping(NC_INT, NcVariant(), 1, 1);
    wrapping.SetSize(1);
    wrapping.Data<int32_t>()[0] = INT32_MAX;
    wrapping.Unpack(NC_INT, NcVariant(std::in_place_type<int32_t>, 2), NcVariant(std::in_place_type<int32_t>, 0));
    EXPECT_EQ(wrapping.Data<int32_t>()[0], -2);

    NcVariantArray doubles(NC_DOUBLE, NcVariant(), 2, 1);
    doubles.SetSize(2);
    doubles.Data<double>()[1] = 4.0;
    doubles.Unpack(NC_DOUBLE, 0.5, 1.0);
    EXPECT_EQ(doubles.Data<double>()[1], 3.0);

    EXPECT_THROW(array.Unpack(NC_SHORT, 2.0, 0.0), std::bad_variant_access);
    NcVariantArray badFill = Shorts({1}, NcVariant(-999.0));
    EXPECT_THROW(badFill.Unpack(NC_SHORT, NcVariant(std::in_place_type<short>, 1),
                                NcVariant(std::in_place_type<short>, 0)),
                 std::bad_variant_access);
    NcVariantArray chars(NC_CHAR, NcVariant(), 1, 2);
    EXPECT_THROWS_TEXT(chars.Unpack(NC_CHAR, NcVariant(), NcVariant()), "cannot unpack strings");
}

TEST(NcVariantArray, UnpackExpandingToDoubleAndFloat) {
    NcVariantArray array = Shorts({1, -999, 3}, NcVariant(std::in_place_type<short>, -999));
    const long reserved = array.Reserved();
    array.Unpack(NC_DOUBLE, NcVariant(0.5f), NcVariant(std::in_place_type<short>, 0));
    EXPECT_EQ(array.ElementType(), NC_DOUBLE);
    EXPECT_EQ(array.Reserved(), reserved);
    EXPECT_EQ(reinterpret_cast<uintptr_t>(array.Data<void>()) % 16, 0u);
    EXPECT_EQ(array.Data<double>()[0], 0.5);
    EXPECT_EQ(array.Data<double>()[1], -999.0);
    EXPECT_EQ(array.Data<double>()[2], 1.5);
    EXPECT_EQ(std::get<double>(array.FillValue()), -999.0);
    EXPECT_EQ(array[1].index(), eNcEmpty);

    NcVariantArray uints(NC_UINT, NcVariant(), 3, 1);
    uints.SetSize(2);
    uints.Data<uint32_t>()[0] = 16777217;  // not a float: single precision shows
    uints.Data<uint32_t>()[1] = 10;
    uints.Unpack(NC_FLOAT, 1.0, NcVariant(std::string("0.25")));
    EXPECT_EQ(uints.Data<float>()[0], 16777216.0f);
    EXPECT_EQ(uints.Data<float>()[1], 10.25f);
    EXPECT_EQ(uints.FillValue().index(), eNcEmpty);

    NcVariantArray bytes(NC_BYTE, NcVariant(std::in_place_type<signed char>, -128), 2, 1);
    bytes.SetSize(2);
    bytes.Data<signed char>()[0] = -128;
    bytes.Data<signed char>()[1] = 4;
    bytes.Unpack(NC_FLOAT, 2.0, 1.0);
    EXPECT_EQ(std::get<float>(bytes.FillValue()), -128.0f);
    EXPECT_EQ(bytes[0].index(), eNcEmpty);
    EXPECT_EQ(std::get<float>(bytes[1]), 9.0f);

    EXPECT_THROWS_TEXT(bytes.Unpack(NC_INT, 1.0, 0.0), "unsupported unpacked element type");
    EXPECT_THROW(bytes.Unpack(NC_DOUBLE, NcVariant(), 0.0), std::runtime_error);
    NcVariantArray badFill = Shorts({1}, NcVariant(-999.0));
    EXPECT_THROW(badFill.Unpack(NC_DOUBLE, 1.0, 0.0), std::bad_variant_access);
    EXPECT_EQ(badFill.ElementType(), NC_SHORT);  // unchanged after the failure
    EXPECT_EQ(badFill.Data<short>()[0], 1);
}

}  // namespace
}  // namespace ZorvoDSG::System
