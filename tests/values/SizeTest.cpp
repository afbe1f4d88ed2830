#include <zorvodsg/values/Size.h>

#include <gtest/gtest.h>

#include <cstdint>

#include "ValueTestHelpers.h"

namespace ZorvoDSG::System {
namespace {

TEST(Size, ProductsAndSumsFailInsteadOfWrapping) {
    EXPECT_EQ(CheckedMultiply(0, SIZE_MAX), 0u);
    EXPECT_EQ(CheckedMultiply(SIZE_MAX, 1), SIZE_MAX);
    EXPECT_EQ(CheckedMultiply(size_t{1} << 31, size_t{1} << 32), size_t{1} << 63);
    EXPECT_INTERNAL_ERROR(static_cast<void>(CheckedMultiply(size_t{1} << 32, size_t{1} << 32)), L"size overflow");
    EXPECT_INTERNAL_ERROR(static_cast<void>(CheckedMultiply(SIZE_MAX / 3 + 1, 3)), L"size overflow");
    EXPECT_EQ(CheckedAdd(SIZE_MAX - 1, 1), SIZE_MAX);
    EXPECT_INTERNAL_ERROR(static_cast<void>(CheckedAdd(SIZE_MAX, 1)), L"size overflow");

    size_t product = 7;
    EXPECT_FALSE(TryMultiply(SIZE_MAX, 2, product));
    EXPECT_EQ(product, 7u);
    static_assert([] {
        size_t p = 0;
        return TryMultiply(6, 7, p) && p == 42;
    }());
}

}  // namespace
}  // namespace ZorvoDSG::System
