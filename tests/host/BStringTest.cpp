#include <zorvodsg/host/BString.h>

#include <gtest/gtest.h>

#include <cwchar>

#include <zorvodsg/host/StringTable.h>

using ZorvoDSG::Host::BString;
using ZorvoDSG::Host::HMODULE;
using ZorvoDSG::Host::LoadLocalizedRes;
using ZorvoDSG::Host::LoadResourceString;
using ZorvoDSG::Host::ResourceModuleHandle;
using ZorvoDSG::Host::ThisModuleResources;

namespace {

TEST(BString, ConstructionAndChainedAppends) {
    EXPECT_EQ(BString().Length(), 0u);
    EXPECT_EQ(BString(static_cast<const wchar_t*>(nullptr)).Str(), L"");
    const BString original(L"abc");
    BString copy = original;
    copy += BString(L"!");
    EXPECT_EQ(original.Str(), L"abc");

    BString text(std::wstring(L"x"));
    (text += L": ") += BString(L"y");
    text += text;
    EXPECT_EQ(text.Str(), L"x: yx: y");
    EXPECT_EQ(std::wcscmp(static_cast<const wchar_t*>(text), L"x: yx: y"), 0);
    EXPECT_TRUE(BString(L"x") == BString(std::wstring(L"x")));
}

TEST(BString, LoadsStringResources) {
    const HMODULE module = ResourceModuleHandle();
    ASSERT_NE(module, nullptr);
    EXPECT_EQ(module, ThisModuleResources());  // no localized module here
    EXPECT_EQ(LoadLocalizedRes(ThisModuleResources()), nullptr);

    for (int id = 101; id <= 146; ++id) {
        EXPECT_GT(BString(id, module).Length(), 0u) << id;
    }
    EXPECT_EQ(BString(101, module).Str(), L"eBadFeatureType: not a dsg type name");
    EXPECT_EQ(BString(104, module).Str(), L"eRowCountDimension:  all row count variables need to have one dimension");
    EXPECT_EQ(BString(134, module).Str(), L"unrecognized error");
    EXPECT_EQ(BString(146, module).Str(),
              L"The input nc file does not conform to the CF Discrete Sampling Geometry conventions.");

    for (const int missing : {0, 100, 147, -101}) {
        EXPECT_EQ(BString(missing, module).Str(), L"") << missing;
    }
    EXPECT_EQ(LoadResourceString(nullptr, 101), L"");
}

}  // namespace
