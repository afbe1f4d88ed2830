#include <zorvodsg/workspace/NetCDFWorkspace.h>

#include <gtest/gtest.h>

#include <fstream>
#include <string>

#include <unistd.h>

#include <zorvodsg/values/Exception.h>
#include "support/ScratchDir.h"

using ZorvoNetCDFDSG::NetCDFWorkspace;

namespace {

class OpenNcMLDocument : public zdsg_test::ScratchDirTest {
protected:
    // The exception s_OpenNcMLDocument throws for `path`; fails the test when it returns.
    ZorvoDSG::Exception Failure(const std::filesystem::path& path) {
        try {
            NetCDFWorkspace::s_OpenNcMLDocument(path);
        } catch (const ZorvoDSG::Exception& e) {
            return e;
        }
        ADD_FAILURE() << "no exception for " << path;
        return ZorvoDSG::Exception(0, L"", path);
    }
};

TEST_F(OpenNcMLDocument, OnlyExactXmlAndNcmlExtensionsAreOpened) {
    const std::string text = "<netcdf/>";
    for (const char* name : {"a.NCML", "a.XML", "a.Xml", "a.txt", "a", "a.ncml.bak", ".ncml"}) {
        const auto path = Write(name, text);
        const auto e = Failure(path);
        EXPECT_EQ(e.NcErr(), ZorvoDSG::eCannotOpenNcmlFile) << name;
        EXPECT_EQ(e.wsDetail(), L"") << name;
        EXPECT_EQ(e.NcPath(), path) << name;
    }
    for (const char* name : {"a.xml", "b.ncml", "c.d.ncml"}) {
        auto doc = NetCDFWorkspace::s_OpenNcMLDocument(Write(name, text));
        ASSERT_TRUE(doc) << name;
        EXPECT_EQ(doc->DocumentElement().TagName(), "netcdf");
        EXPECT_EQ(doc->Url(), m_dir / name);
    }
}

TEST_F(OpenNcMLDocument, FilesThatCannotBeOpenedAreNotParseErrors) {
    const auto dir = m_dir / "folder.ncml";
    std::filesystem::create_directory(dir);
    for (const auto& path : {m_dir / "missing.ncml", dir}) {
        const auto e = Failure(path);
        EXPECT_EQ(e.NcErr(), ZorvoDSG::eCannotOpenNcmlFile) << path;
        EXPECT_EQ(e.wsDetail(), L"") << path;
    }
}

TEST_F(OpenNcMLDocument, ParseErrorsCarryLinePositionAndReason) {
    const auto path = Write("bad.ncml", "<netcdf>\n  <variable name='x'>\n</netcdf>\n");
    const auto e = Failure(path);
    EXPECT_EQ(e.NcErr(), ZorvoDSG::eCannotParseNcmlFile);
    EXPECT_EQ(e.NcPath(), path);
    const std::wstring& detail = e.wsDetail();
    EXPECT_EQ(detail.rfind(L"line: 3, char: ", 0), 0u) << std::string(detail.begin(), detail.end());
    ASSERT_GE(detail.size(), 2u);
    EXPECT_EQ(detail.back(), L'\n');
    EXPECT_NE(detail[detail.size() - 2], L'\n');

    EXPECT_EQ(Failure(Write("empty.xml", "")).NcErr(), ZorvoDSG::eCannotParseNcmlFile);
}

TEST_F(OpenNcMLDocument, NamespacedDocumentsSelectLikePlainOnes) {
    auto doc = NetCDFWorkspace::s_OpenNcMLDocument(
        Write("ns.ncml", "<?xml version='1.0' encoding='UTF-8'?>\n"
                         "<netcdf xmlns='http://www.unidata.ucar.edu/namespaces/netcdf/ncml-2.2' location='f.nc'>\n"
                         "  <remove type='group' name='obs'/>\n"
                         "  <variable name='t'><attribute name='units' type='string' value='K'/></variable>\n"
                         "</netcdf>\n"));
    ASSERT_TRUE(doc);
    const auto removals = doc->SelectNodes("/netcdf/remove[@type = 'group']");
    ASSERT_EQ(removals.size(), 1u);
    EXPECT_EQ(removals[0].GetAttribute(L"name"), L"obs");
    const auto variables = doc->DocumentElement().SelectNodes("variable");
    ASSERT_EQ(variables.size(), 1u);
    EXPECT_EQ(variables[0].SelectNodes("attribute").size(), 1u);
}

TEST_F(OpenNcMLDocument, HostileDocumentsAreParseErrors) {
    const auto path = Write("evil.ncml", "<?xml version='1.0'?>\n"
                                         "<!DOCTYPE netcdf [\n<!ENTITY x SYSTEM 'file:///etc/passwd'>\n]>\n"
                                         "<netcdf><attribute name='a' type='string' value='&x;'/></netcdf>\n");
    const auto e = Failure(path);
    EXPECT_EQ(e.NcErr(), ZorvoDSG::eCannotParseNcmlFile);
    EXPECT_NE(e.wsDetail().find(L"entity"), std::wstring::npos);
}

}  // namespace
