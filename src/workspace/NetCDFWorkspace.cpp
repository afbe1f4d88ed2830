#include <zorvodsg/workspace/NetCDFWorkspace.h>

#include <fstream>
#include <string>
#include <system_error>

#include <zorvodsg/values/Exception.h>

using ZorvoDSG::Host::IXMLDOMDocument;
using ZorvoDSG::Host::IXMLDOMDocumentPtr;
using ZorvoDSG::Host::XmlParseError;

namespace ZorvoNetCDFDSG {

namespace {

// Whether the file can be opened for reading, as opening it as a stream would tell.
bool CanOpen(const std::filesystem::path& path) {
    std::error_code ec;
    if (std::filesystem::is_directory(path, ec))
        return false;
    std::ifstream in(path, std::ios::binary);
    return static_cast<bool>(in);
}

}  // namespace

IXMLDOMDocumentPtr NetCDFWorkspace::s_OpenNcMLDocument(std::filesystem::path path) {
    const auto extension = path.extension().native();
    if (extension != ".xml" && extension != ".ncml")
        throw ZorvoDSG::Exception(ZorvoDSG::eCannotOpenNcmlFile, L"", path);
    if (!CanOpen(path))
        throw ZorvoDSG::Exception(ZorvoDSG::eCannotOpenNcmlFile, L"", path);

    XmlParseError error;
    IXMLDOMDocumentPtr document = IXMLDOMDocument::LoadFile(path, error);
    if (!document) {
        throw ZorvoDSG::Exception(ZorvoDSG::eCannotParseNcmlFile,
                                  L"line: " + std::to_wstring(error.line) + L", char: " +
                                      std::to_wstring(error.linepos) + L", " + error.reason + L"\n",
                                  path);
    }
    return document;
}

}  // namespace ZorvoNetCDFDSG
