#include <zorvodsg/host/xml/XmlDom.h>

#include "support/ScratchDir.h"

#include <gtest/gtest.h>

#include <chrono>
#include <fstream>
#include <string>
#include <thread>

#include <unistd.h>

using ZorvoDSG::Host::IXMLDOMDocument;
using ZorvoDSG::Host::IXMLDOMDocumentPtr;
using ZorvoDSG::Host::IXMLDOMElement;
using ZorvoDSG::Host::XmlParseError;

namespace {

const char* const kNcmlNs = "http://www.unidata.ucar.edu/namespaces/netcdf/ncml-2.2";

std::string Amendment(const std::string& rootOpen, const std::string& rootClose, const std::string& p) {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n" + rootOpen + "\n" +
           "  <" + p + "remove type=\"group\" name=\"obs\"/>\n" +
           "  <" + p + "attribute name=\"title\" type=\"string\" value=\"T\"/>\n" +
           "  <" + p + "remove type=\"variable\" name=\"junk\"/>\n" +
           "  <" + p + "variable name=\"temp\" orgName=\"t\">\n" +
           "    <" + p + "remove type=\"attribute\" name=\"units\"/>\n" +
           "    <" + p + "attribute name=\"units\" type=\"string\" value=\"K\"/>\n" +
           "  </" + p + "variable>\n" +
           "  <" + p + "group name=\"obs\"><" + p + "variable name=\"v\"/></" + p + "group>\n" +
           "  <" + p + "remove type=\"group\" name=\"/other/\"/>\n" + rootClose + "\n";
}

IXMLDOMDocumentPtr MustParse(const std::string& text) {
    XmlParseError error;
    auto doc = IXMLDOMDocument::LoadText(text, "mem.ncml", error);
    EXPECT_TRUE(doc) << std::string(error.reason.begin(), error.reason.end());
    return doc;
}

std::vector<std::wstring> Names(const std::vector<IXMLDOMElement>& elements) {
    std::vector<std::wstring> names;
    for (const auto& e : elements)
        names.push_back(e.GetAttribute(L"name").value_or(L"<none>"));
    return names;
}

struct Spelling {
    std::string label, open, close, prefix;
};

void PrintTo(const Spelling& s, std::ostream* os) { *os << s.label; }

class NcmlSelection : public ::testing::TestWithParam<Spelling> {};

// The selections the NcML reader uses behave identically with no namespace, the NcML default
// namespace, and a prefixed NcML namespace.
TEST_P(NcmlSelection, MatchesWhateverTheNamespaceSpelling) {
    const auto& s = GetParam();
    auto doc = MustParse(Amendment(s.open, s.close, s.prefix));
    ASSERT_TRUE(doc);
    EXPECT_EQ(doc->DocumentElement().TagName(), "netcdf");

    EXPECT_EQ(Names(doc->SelectNodes("/netcdf/remove[@type = 'group']")),
              (std::vector<std::wstring>{L"obs", L"/other/"}));
    auto groups = doc->SelectNodes("/netcdf/group");
    ASSERT_EQ(groups.size(), 1u);
    EXPECT_EQ(groups[0].TagName(), "group");
    EXPECT_EQ(Names(groups[0].SelectNodes("variable")), std::vector<std::wstring>{L"v"});

    const auto root = doc->DocumentElement();
    EXPECT_EQ(Names(root.SelectNodes("attribute")), std::vector<std::wstring>{L"title"});
    EXPECT_EQ(Names(root.SelectNodes("remove[@type = 'variable']")), std::vector<std::wstring>{L"junk"});
    auto variables = root.SelectNodes("variable");
    ASSERT_EQ(variables.size(), 1u);
    EXPECT_EQ(variables[0].GetAttribute(L"orgName"), L"t");
    EXPECT_EQ(Names(variables[0].SelectNodes("remove[@type = 'attribute']")), std::vector<std::wstring>{L"units"});
    EXPECT_EQ(Names(variables[0].SelectNodes("attribute")), std::vector<std::wstring>{L"units"});
}

INSTANTIATE_TEST_SUITE_P(
    Spellings, NcmlSelection,
    ::testing::Values(Spelling{"none", "<netcdf>", "</netcdf>", ""},
                      Spelling{"default", std::string("<netcdf xmlns=\"") + kNcmlNs + "\" location=\"x.nc\">",
                               "</netcdf>", ""},
                      Spelling{"prefixed", std::string("<nc:netcdf xmlns:nc=\"") + kNcmlNs + "\">", "</nc:netcdf>",
                               "nc:"}),
    [](const ::testing::TestParamInfo<Spelling>& spelling) { return spelling.param.label; });

TEST(XmlDom, ElementsOfAnotherNamespaceDoNotMatch) {
    auto doc = MustParse("<netcdf xmlns=\"urn:other\"><group name=\"g\"/></netcdf>");
    ASSERT_TRUE(doc);
    EXPECT_TRUE(doc->SelectNodes("/netcdf/group").empty());
    EXPECT_EQ(doc->DocumentElement().TagName(), "netcdf");
}

TEST(XmlDom, AttributesAreDecodedCodePointExactAndAbsenceIsDistinct) {
    auto doc = MustParse("<netcdf a=\"\xC2\xB5m \xF0\x9F\x98\x80 &amp;&#x263A;\" empty=\"\" "
                         "xmlns:o=\"urn:o\" o:qualified=\"q\"/>");
    ASSERT_TRUE(doc);
    const auto root = doc->DocumentElement();
    EXPECT_EQ(root.GetAttribute(L"a"), std::wstring(L"\u00B5m \U0001F600 &\u263A"));
    EXPECT_EQ(root.GetAttribute(L"empty"), std::wstring());
    EXPECT_EQ(root.GetAttribute(L"missing"), std::nullopt);
    EXPECT_EQ(root.GetAttribute(L"qualified"), std::nullopt);

    const IXMLDOMElement none;
    EXPECT_TRUE(none.IsNull());
    EXPECT_EQ(none.GetAttribute(L"a"), std::nullopt);
    EXPECT_TRUE(none.SelectNodes("*").empty());
    EXPECT_EQ(none.TagName(), "");
}

TEST(XmlDom, SelectionYieldsOnlyElementsInDocumentOrderAndSilentlyRejectsBadXPath) {
    auto doc = MustParse("<netcdf><b n='1'/><a n='2'><b n='3'/></a><b n='4'/>text<!--c--></netcdf>");
    ASSERT_TRUE(doc);
    std::vector<std::wstring> order;
    for (const auto& e : doc->SelectNodes("//b | //a"))
        order.push_back(*e.GetAttribute(L"n"));
    EXPECT_EQ(order, (std::vector<std::wstring>{L"1", L"2", L"3", L"4"}));

    ::testing::internal::CaptureStderr();
    EXPECT_TRUE(doc->SelectNodes("//@n").empty());
    EXPECT_TRUE(doc->SelectNodes("/netcdf/text() | //comment()").empty());
    EXPECT_TRUE(doc->SelectNodes("count(//b)").empty());
    EXPECT_TRUE(doc->SelectNodes("///[").empty());
    EXPECT_TRUE(doc->SelectNodes("").empty());
    EXPECT_TRUE(doc->SelectNodes("nc:netcdf").empty());
    EXPECT_TRUE(doc->DocumentElement().SelectNodes("b[").empty());
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "");
}

TEST(XmlDom, MalformedTextIsReportedWithPositionAndWithoutOutput) {
    ::testing::internal::CaptureStderr();
    XmlParseError error;
    EXPECT_FALSE(IXMLDOMDocument::LoadText("<netcdf>\n  <group name='a'>\n</netcdf>", "m.xml", error));
    EXPECT_EQ(error.line, 3);
    EXPECT_GT(error.linepos, 0);
    EXPECT_FALSE(error.reason.empty());
    EXPECT_NE(error.reason.back(), L'\n');

    for (const char* bad : {"", "   ", "<a>", "<a></b>", "<a x='1' x='2'/>", "<a/><b/>", "\xFF\xFE<"}) {
        error = XmlParseError{};
        EXPECT_FALSE(IXMLDOMDocument::LoadText(bad, "m.xml", error)) << bad;
        EXPECT_FALSE(error.reason.empty()) << bad;
    }
    // A fresh thread has libxml2's default handlers unless we silenced them for it too.
    std::thread([] {
        XmlParseError threadError;
        EXPECT_FALSE(IXMLDOMDocument::LoadText("<a>", "t.xml", threadError));
    }).join();
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "");
}

TEST(XmlDom, HostileDocumentsAreRefusedQuickly) {
    const std::string laughs =
        "<?xml version=\"1.0\"?>\n<!DOCTYPE lolz [\n <!ENTITY lol \"lol\">\n"
        " <!ENTITY lol1 \"&lol;&lol;&lol;&lol;&lol;&lol;&lol;&lol;&lol;&lol;\">\n"
        " <!ENTITY lol2 \"&lol1;&lol1;&lol1;&lol1;&lol1;&lol1;&lol1;&lol1;&lol1;&lol1;\">\n"
        " <!ENTITY lol3 \"&lol2;&lol2;&lol2;&lol2;&lol2;&lol2;&lol2;&lol2;&lol2;&lol2;\">\n"
        " <!ENTITY lol4 \"&lol3;&lol3;&lol3;&lol3;&lol3;&lol3;&lol3;&lol3;&lol3;&lol3;\">\n"
        " <!ENTITY lol5 \"&lol4;&lol4;&lol4;&lol4;&lol4;&lol4;&lol4;&lol4;&lol4;&lol4;\">\n"
        " <!ENTITY lol6 \"&lol5;&lol5;&lol5;&lol5;&lol5;&lol5;&lol5;&lol5;&lol5;&lol5;\">\n"
        " <!ENTITY lol7 \"&lol6;&lol6;&lol6;&lol6;&lol6;&lol6;&lol6;&lol6;&lol6;&lol6;\">\n"
        " <!ENTITY lol8 \"&lol7;&lol7;&lol7;&lol7;&lol7;&lol7;&lol7;&lol7;&lol7;&lol7;\">\n"
        " <!ENTITY lol9 \"&lol8;&lol8;&lol8;&lol8;&lol8;&lol8;&lol8;&lol8;&lol8;&lol8;\">\n"
        "]>\n<netcdf><attribute name=\"&lol9;\" value=\"&lol9;\">&lol9;</attribute></netcdf>";
    const std::string externalEntity =
        "<?xml version=\"1.0\"?>\n<!DOCTYPE netcdf [<!ENTITY x SYSTEM \"file:///etc/passwd\">]>\n"
        "<netcdf><attribute name=\"a\">&x;</attribute></netcdf>";
    const std::string parameterEntity =
        "<?xml version=\"1.0\"?>\n<!DOCTYPE netcdf [<!ENTITY % p SYSTEM \"file:///etc/passwd\"> %p;]>\n<netcdf/>";
    const std::string unparsedEntity =
        "<!DOCTYPE netcdf [<!NOTATION n SYSTEM \"n\"><!ENTITY u SYSTEM \"file:///etc/passwd\" NDATA n>]><netcdf/>";

    ::testing::internal::CaptureStderr();
    for (const auto* text : {&laughs, &externalEntity, &parameterEntity, &unparsedEntity}) {
        const auto start = std::chrono::steady_clock::now();
        XmlParseError error;
        EXPECT_FALSE(IXMLDOMDocument::LoadText(*text, "hostile.xml", error)) << *text;
        EXPECT_EQ(error.reason, L"entity declarations are not allowed");
        EXPECT_GE(error.line, 1);  // stopped by the declaration hook, at the declaration
        EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(2));
    }
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "");
}

TEST(XmlDom, ExternalDtdIsNeitherFetchedNorRequired) {
    auto doc = MustParse("<!DOCTYPE netcdf SYSTEM \"http://192.0.2.1/ncml.dtd\"><netcdf><group name='g'/></netcdf>");
    ASSERT_TRUE(doc);
    EXPECT_EQ(doc->SelectNodes("/netcdf/group").size(), 1u);
}

TEST(XmlDom, AbsurdNestingFailsInsteadOfExhaustingTheStack) {
    std::string deep;
    for (int i = 0; i < 100000; ++i)
        deep += "<a>";
    XmlParseError error;
    EXPECT_FALSE(IXMLDOMDocument::LoadText(deep, "deep.xml", error));
    EXPECT_FALSE(error.reason.empty());
}

class XmlDomFiles : public zdsg_test::ScratchDirTest {};

TEST_F(XmlDomFiles, LoadsFilesAndRecordsTheirPath) {
    const auto path = Write("a.ncml", "\xEF\xBB\xBF<netcdf xmlns='http://www.unidata.ucar.edu/namespaces/netcdf/ncml-2.2'>"
                                      "<group name='g'/></netcdf>");
    XmlParseError error;
    auto doc = IXMLDOMDocument::LoadFile(path, error);
    ASSERT_TRUE(doc) << std::string(error.reason.begin(), error.reason.end());
    EXPECT_EQ(doc->Url(), path);
    EXPECT_EQ(doc->SelectNodes("/netcdf/group").size(), 1u);
}

TEST_F(XmlDomFiles, UnusableFilesFailWithAReason) {
    const auto empty = Write("empty.xml", "");
    const auto malformed = Write("bad.xml", "<netcdf>\n<a>\n");
    for (const auto& path : {m_dir / "missing.xml", m_dir, empty, malformed}) {
        XmlParseError error;
        EXPECT_FALSE(IXMLDOMDocument::LoadFile(path, error)) << path;
        EXPECT_FALSE(error.reason.empty()) << path;
    }
}

}  // namespace
