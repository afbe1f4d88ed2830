#pragma once
// Shared helpers of the NetCDFFile and Variable tests.

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include <zorvodsg/host/xml/XmlDom.h>
#include <zorvodsg/netcdf/NetCDFFile.h>
#include <zorvodsg/spacetime/UnitSystem.h>
#include <zorvodsg/values/NetCDFWorkspaceLog.h>

namespace ncfile_test {

using ZorvoDSG::Host::IXMLDOMDocument;
using ZorvoDSG::Host::XmlParseError;

inline std::filesystem::path DataPath(const std::string& name) { return std::filesystem::path(ZDSG_TEST_DATA_DIR) / name; }

// Classification needs the unit database; loading it twice does nothing.
inline void InitUnits() { ZorvoDSG::s_InitUDUnits2(ZDSG_UDUNITS2_XML); }

inline std::vector<std::shared_ptr<ZorvoNetCDFDSG::NetCDFFile>> Open(
    const std::filesystem::path& path, IXMLDOMDocument* ncml = nullptr,
    const ZorvoNetCDFDSG::OpenOptions& options = ZorvoNetCDFDSG::OpenOptions()) {
    InitUnits();
    ZorvoNetCDFDSG::NetCDFWorkspaceLog log;
    return ZorvoNetCDFDSG::NetCDFFile::s_Open(path, 7, ncml, log, options);
}

inline ZorvoNetCDFDSG::OpenOptions IsoTimeUnits() {
    ZorvoNetCDFDSG::OpenOptions options;
    options.bIsoTimeUnits = true;
    return options;
}

inline std::shared_ptr<ZorvoNetCDFDSG::NetCDFFile> OpenOne(const std::string& name) {
    auto files = Open(DataPath(name));
    return files.size() == 1 ? files.front() : nullptr;
}

inline std::shared_ptr<IXMLDOMDocument> NcML(const std::string& text) {
    XmlParseError error;
    return IXMLDOMDocument::LoadText(text, "memory.ncml", error);
}

}  // namespace ncfile_test
