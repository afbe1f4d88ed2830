#pragma once
// Opening the classification and NcML fixtures, with an NcML document given as text.

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "netcdf/NcFileTestSupport.h"

namespace NcmetaTest {

using ZorvoDSG::Host::IXMLDOMDocument;
using ZorvoDSG::Host::IXMLDOMDocumentPtr;
using ZorvoDSG::Host::XmlParseError;

using ncfile_test::DataPath;

inline std::filesystem::path SourceDataFile(const std::string& name) {
    return std::filesystem::path(ZDSG_SOURCE_DIR) / "tests" / "data" / name;
}

inline IXMLDOMDocumentPtr ParseNcML(const std::string& text) {
    XmlParseError error;
    IXMLDOMDocumentPtr document = IXMLDOMDocument::LoadText(text, "test.ncml", error);
    EXPECT_TRUE(document) << "NcML does not parse";
    return document;
}

// A document element around `body`, without namespace.
inline std::string NcML(const std::string& body) { return "<netcdf>" + body + "</netcdf>"; }

// Units are needed by classification; loading is once per process.
class UnitsTest : public ::testing::Test {
protected:
    static void SetUpTestSuite() { ncfile_test::InitUnits(); }

    // A file without groups, amended by `ncml` (empty: none).
    std::shared_ptr<ZorvoNetCDFDSG::NetCDFFile> Open(const std::string& fileName, const std::string& ncml = {}) {
        const IXMLDOMDocumentPtr document = ncml.empty() ? nullptr : ParseNcML(ncml);
        return std::make_shared<ZorvoNetCDFDSG::NetCDFFile>(DataPath(fileName), 1, "", "", document.get(), log);
    }

    std::vector<ZorvoDSG::System::Message> Messages(long code) { return log.FindMessageRange(code, code); }

    ZorvoNetCDFDSG::NetCDFWorkspaceLog log;
};

}  // namespace NcmetaTest
