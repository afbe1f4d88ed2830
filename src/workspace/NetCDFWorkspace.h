#pragma once
// A workspace of netCDF files for the host. For now it only opens the NcML documents that amend
// the files of its entries.

#include <filesystem>

#include <zorvodsg/host/xml/XmlDom.h>

namespace ZorvoNetCDFDSG {

class NetCDFWorkspace {
public:
    // Opens and parses an NcML document. The extension must be exactly ".xml" or ".ncml".
    // Throws ZorvoDSG::Exception eCannotOpenNcmlFile for another extension or a file that cannot be
    // opened, and eCannotParseNcmlFile ("line: L, char: C, reason") when it is not acceptable XML.
    static ZorvoDSG::Host::IXMLDOMDocumentPtr s_OpenNcMLDocument(std::filesystem::path path);
};

}  // namespace ZorvoNetCDFDSG
