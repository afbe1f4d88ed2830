#include <zorvodsg/host/Utf8.h>

#include <gtest/gtest.h>

#include <string>

using ZorvoDSG::Host::Utf8ToWide;
using ZorvoDSG::Host::WideToUtf8;

namespace {

TEST(Utf8, RoundTripsEveryEncodingLength) {
    const std::u32string points = {U'\0', U'A',      0x7F,    0x80,    0xE9,    0x7FF,    0x800,
                                   0x20AC, 0xD7FF,   0xE000,  0xFFFD,  0xFFFF,  0x10000,  0x1F600, 0x10FFFF};
    std::wstring wide;
    for (const char32_t cp : points) {
        wide += static_cast<wchar_t>(cp);
    }
    const std::string utf8 = WideToUtf8(wide);
    EXPECT_EQ(utf8.size(), 1u + 1 + 1 + 2 + 2 + 2 + 3 + 3 + 3 + 3 + 3 + 3 + 4 + 4 + 4);
    EXPECT_EQ(Utf8ToWide(utf8), wide);

    EXPECT_EQ(WideToUtf8(L"\u20AC"), "\xE2\x82\xAC");
    EXPECT_EQ(Utf8ToWide("\xF0\x9F\x98\x80"), std::wstring(1, static_cast<wchar_t>(0x1F600)));
    EXPECT_EQ(Utf8ToWide(""), L"");
}

TEST(Utf8, MalformedBytesBecomeReplacementCharacters) {
    const std::wstring kBad(1, static_cast<wchar_t>(0xFFFD));
    EXPECT_EQ(Utf8ToWide("a\x80" "b"), L"a" + kBad + L"b");    // stray continuation byte
    EXPECT_EQ(Utf8ToWide("\xFF"), kBad);
    EXPECT_EQ(Utf8ToWide("\xC0\xAF"), kBad + kBad);           // overlong '/'
    EXPECT_EQ(Utf8ToWide("\xED\xA0\x80"), kBad + kBad + kBad);  // surrogate
    EXPECT_EQ(Utf8ToWide("\xF4\x90\x80\x80").find(static_cast<wchar_t>(0x110000)), std::wstring::npos);
    const std::wstring truncated = Utf8ToWide("\xE2\x82");
    ASSERT_FALSE(truncated.empty());
    EXPECT_EQ(truncated.find_first_not_of(kBad), std::wstring::npos);
    const std::wstring interrupted = Utf8ToWide("\xE2\x82" "A");
    ASSERT_FALSE(interrupted.empty());
    EXPECT_EQ(interrupted.back(), L'A');  // the byte that interrupts a sequence is kept
    EXPECT_EQ(interrupted.find_first_not_of(kBad), interrupted.size() - 1);

    // Wide values that are not code points.
    EXPECT_EQ(WideToUtf8(std::wstring(1, static_cast<wchar_t>(0xD800))), "\xEF\xBF\xBD");
    EXPECT_EQ(WideToUtf8(std::wstring(1, static_cast<wchar_t>(0x110000))), "\xEF\xBF\xBD");
}

}  // namespace
