#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <variant>

#include "netcdf/NcmetaFiles.h"
#include <zorvodsg/values/Exception.h>

using ZorvoDSG::Host::IXMLDOMDocument;
using ZorvoDSG::Host::XmlParseError;

namespace {

using namespace ZorvoDSG;
using NcmetaTest::NcML;
using ZorvoDSG::System::NcVariant;
using ZorvoNetCDFDSG::NetCDFFile;

class NcMLTest : public NcmetaTest::UnitsTest {
protected:
    std::shared_ptr<NetCDFFile> Amend(const std::string& body) { return Open("ncmeta_assumed.nc", NcML(body)); }

    // The global attribute `name` after amending with <attribute name="name" type=.. value=..>.
    NcVariant Converted(const std::string& type, const std::string& value) {
        return Amend("<attribute name=\"x\" type=\"" + type + "\" value=\"" + value + "\"/>")->GlobalAttribute("x");
    }

    // Runs `action`, expecting an Exception with `code` and `detail`.
    template <typename Action>
    void ExpectException(Action action, long code, const std::wstring& detail) {
        try {
            action();
            ADD_FAILURE() << "no exception";
        } catch (const Exception& e) {
            EXPECT_EQ(e.NcErr(), code);
            EXPECT_EQ(e.wsDetail(), detail);
            EXPECT_TRUE(e.NcPath().empty());
        }
    }

    std::vector<std::shared_ptr<NetCDFFile>> OpenGroups(IXMLDOMDocument* ncml) {
        return NetCDFFile::s_Open(NcmetaTest::DataPath("ncmeta_groups.nc"), 1, ncml, log);
    }
};

TEST_F(NcMLTest, ValueConversionByTypeIgnoringCase) {
    EXPECT_EQ(std::get<double>(Converted("Double", "1e3")), 1000.0);
    EXPECT_EQ(std::get<float>(Converted("FLOAT", " -2.5 ")), -2.5f);
    EXPECT_EQ(std::get<std::string>(Converted("string", "caf\xC3\xA9")), "caf\xC3\xA9");
    EXPECT_EQ(std::get<std::string>(Converted("char", "65")), "A");
    EXPECT_EQ(std::get<signed char>(Converted("byte", "-128")), -128);
    EXPECT_EQ(std::get<short>(Converted("short", "+32767")), 32767);
    EXPECT_EQ(std::get<int32_t>(Converted("int", "-7")), -7);
    EXPECT_EQ(std::get<int32_t>(Converted("Long", "2147483647")), 2147483647);
}

TEST_F(NcMLTest, BadValuesAndTypes) {
    for (const auto& [type, value] : std::vector<std::pair<std::string, std::string>>{{"byte", "128"},
                                                                                       {"char", "x"},
                                                                                       {"short", "40000"},
                                                                                       {"int", "3.0"},
                                                                                       {"long", "2147483648"},
                                                                                       {"float", "1e39"},
                                                                                       {"double", "nan"},
                                                                                       {"double", ""},
                                                                                       {"double", "1,5"}}) {
        EXPECT_THROW(Converted(type, value), Exception) << type << " " << value;
    }
    ExpectException([&] { Converted("ushort", "1"); }, eInternalError, L"unrecognized ncml type");
    ExpectException([&] { Converted("short", "x1"); }, eInvalidNcML, L"cannot convert \"x1\" to short");
}

TEST_F(NcMLTest, GlobalAttributesRedefinedOrAdded) {
    const auto file = Amend(R"(<attribute name="title" type="string" value="new title"/>)"
                            R"(<attribute name="Conventions" type="string" value="CF-1.8"/>)");
    EXPECT_EQ(std::get<std::string>(file->GlobalAttribute("title")), "new title");
    const auto messages = Messages(14);
    ASSERT_EQ(messages.size(), 1u);
    EXPECT_EQ(messages[0].Text(), L"Conventions");
}

TEST_F(NcMLTest, RenameActsOnTheRenamedVariable) {
    const auto file = Amend(R"(<variable name="temperature" orgName="temp">)"
                            R"(<remove type="attribute" name="units"/>)"
                            R"(<remove type="attribute" name="absent"/>)"
                            R"(<remove type="attribute"/>)"
                            R"(<attribute name="units" type="string" value="degC"/>)"
                            R"(<attribute name="coordinates" type="string" value="lon lat"/>)"
                            "</variable>");
    EXPECT_EQ(file->Name2Var().count("temp"), 0u);
    const Variable& temperature = file->GetVariable("temperature");
    EXPECT_EQ(temperature.Id(), 2);
    EXPECT_EQ(std::get<std::string>(temperature.AttributeValue("units")), "degC");
    EXPECT_EQ(std::get<std::string>(temperature.AttributeValue("coordinates")), "lon lat");

    ASSERT_EQ(Messages(16).size(), 1u);
    EXPECT_EQ(Messages(16)[0].Text(), L"temp");
    // units was removed first, so it is added again; coordinates is replaced.
    ASSERT_EQ(Messages(13).size(), 1u);
    EXPECT_EQ(Messages(13)[0].Text(), L"units");
}

TEST_F(NcMLTest, CreatedVariableGetsAnUnusedIdAfterARemoval) {
    const auto file = Amend(R"(<remove type="variable" name="lat"/>)"
                            R"(<remove type="variable" name="no_such_variable"/>)"
                            R"(<variable name="station"><attribute name="cf_role" type="string" value="timeseries_id"/>)"
                            "</variable>");
    EXPECT_EQ(file->Name2Var().count("lat"), 0u);
    // lon temp sal crs oxy, the assumed geographic mapping and station
    ASSERT_EQ(file->Variables().size(), 7u);
    const Variable& station = file->GetVariable("station");
    EXPECT_NE(station.Id(), file->Name2Var().at("zorvo_assumed_geographic"));
    EXPECT_THROW(station.Type(), std::runtime_error);  // no type
    EXPECT_EQ(std::get<std::string>(station.AttributeValue("cf_role")), "timeseries_id");

    ASSERT_EQ(Messages(15).size(), 1u);
    EXPECT_EQ(Messages(15)[0].Text(), L"station");
    EXPECT_EQ(Messages(13).size(), 1u);
}

TEST_F(NcMLTest, CreatedVariableTakesTheLookupName) {
    const auto file = Amend(R"(<variable name="a" orgName="b"/>)");
    EXPECT_EQ(file->Name2Var().count("b"), 1u);
    EXPECT_EQ(file->Name2Var().count("a"), 0u);
    EXPECT_TRUE(Messages(16).empty());
}

TEST_F(NcMLTest, IncompleteElements) {
    ExpectException([&] { Amend(R"(<attribute name="a" type="string"/>)"); }, eIncompleteNcMLAttribute,
                    L"unnamed variable");
    ExpectException([&] { Amend(R"(<variable name="temp"><attribute type="int" value="1"/></variable>)"); },
                    eIncompleteNcMLAttribute, L"temp");
    ExpectException([&] { Amend(R"(<variable><attribute name="a" type="int" value="1"/></variable>)"); },
                    eInvalidNcML, L"unnamed variable");
    ExpectException([&] { Amend(R"(<remove type="variable"/>)"); }, eInvalidNcML, L"unnamed variable");
}

TEST_F(NcMLTest, FileWithoutGroupsIgnoresGroupElements) {
    const auto file = Amend(R"(<group name="/"><attribute name="in_group" type="int" value="1"/></group>)"
                            R"(<group><attribute name="unnamed" type="int" value="1"/></group>)"
                            R"(<attribute name="at_root" type="int" value="1"/>)");
    EXPECT_FALSE(file->HasGlobalAttribute("in_group"));
    EXPECT_TRUE(file->HasGlobalAttribute("at_root"));
}

TEST_F(NcMLTest, GroupElementMatchingForms) {
    for (const std::string name : {"obs", "/obs", "/obs/", "obs/"}) {
        const auto ncml = NcmetaTest::ParseNcML(
            NcML("<group name=\"" + name + "\"><attribute name=\"mark\" type=\"string\" value=\"obs\"/></group>"));
        const auto files = OpenGroups(ncml.get());
        ASSERT_EQ(files.size(), 3u);
        EXPECT_EQ(files[0]->FullGroupName(), "/obs/deep/");
        EXPECT_FALSE(files[0]->HasGlobalAttribute("mark")) << name;
        EXPECT_EQ(std::get<std::string>(files[1]->GlobalAttribute("mark")), "obs") << name;
        EXPECT_FALSE(files[2]->HasGlobalAttribute("mark")) << name;
    }
}

TEST_F(NcMLTest, UnnamedGroupElementFailsForSubgroups) {
    const auto ncml = NcmetaTest::ParseNcML(NcML(R"(<group><attribute name="a" type="int" value="1"/></group>)"));
    ExpectException([&] { OpenGroups(ncml.get()); }, eInvalidNcML, L"unnamed group");
}

TEST_F(NcMLTest, NamespacedDocumentFromFile) {
    XmlParseError error;
    const auto ncml = IXMLDOMDocument::LoadFile(NcmetaTest::SourceDataFile("ncmeta_groups.ncml"), error);
    ASSERT_TRUE(ncml);
    const auto files = OpenGroups(ncml.get());
    ASSERT_EQ(files.size(), 3u);
    EXPECT_EQ(std::get<std::string>(files[0]->GlobalAttribute("where")), "deep");
    EXPECT_EQ(std::get<std::string>(files[1]->GlobalAttribute("where")), "obs");  // the first match only
    EXPECT_EQ(std::get<std::string>(files[2]->GlobalAttribute("where")), "root");

    Variable& renamed = files[1]->GetVariable("renamed");
    EXPECT_EQ(renamed.NameWithFullGroupName(), "/obs/renamed");
    EXPECT_EQ(std::get<std::string>(renamed.AttributeValue("units")), "K");
    EXPECT_EQ(files[1]->Name2Var().count("obs_var"), 0u);
}

}  // namespace
