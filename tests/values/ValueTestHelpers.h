#pragma once
// Checks for the three kinds of failure of the value types.

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include <zorvodsg/values/Exception.h>

namespace ZorvoDSG::Testing {

// The statement throws Exception eInternalError with `detail` and an empty path.
#define EXPECT_INTERNAL_ERROR(statement, detail)                                   \
    do {                                                                           \
        try {                                                                      \
            statement;                                                             \
            ADD_FAILURE() << "no exception from " #statement;                      \
        } catch (const ZorvoDSG::Exception& e) {                                   \
            EXPECT_EQ(e.NcErr(), ZorvoDSG::eInternalError);                        \
            EXPECT_EQ(e.wsDetail(), std::wstring(detail));                         \
            EXPECT_TRUE(e.NcPath().empty());                                       \
        }                                                                          \
    } while (false)

// The statement throws the plain text `text` as a const char*.
#define EXPECT_THROWS_TEXT(statement, text)                                        \
    do {                                                                           \
        try {                                                                      \
            statement;                                                             \
            ADD_FAILURE() << "no exception from " #statement;                      \
        } catch (const char* thrown) {                                             \
            EXPECT_STREQ(thrown, text);                                            \
        }                                                                          \
    } while (false)

// The statement throws a standard exception of `type` whose what() is `text`.
#define EXPECT_THROWS_WHAT(statement, type, text)                                  \
    do {                                                                           \
        try {                                                                      \
            statement;                                                             \
            ADD_FAILURE() << "no exception from " #statement;                      \
        } catch (const type& e) {                                                  \
            EXPECT_STREQ(e.what(), text);                                          \
        }                                                                          \
    } while (false)

}  // namespace ZorvoDSG::Testing
