#pragma once
// What every command loads before it reads a file: the UDUNITS-2 database and the NcML document.

#include <optional>
#include <string>

#include <zorvodsg/host/xml/XmlDom.h>

namespace zdsg {

struct RunResources {
    std::optional<std::string> udunits2;  // the unit database loaded, if any
    std::optional<std::string> ncmlPath;  // the NcML document applied, if any
    ZorvoDSG::Host::IXMLDOMDocumentPtr ncml;
};

// Loads the database named by --udunits (found automatically when empty) and opens the NcML
// document named by --ncml, once, before any file: a broken document would make every file fail the
// same way. Problems are printed on stderr; false when the run must end with exit status 1 (a named
// database or the document could not be loaded; a database not found is only noted).
bool LoadRunResources(const std::string& udunitsOption, const std::string& ncmlOption, RunResources& resources);

}  // namespace zdsg
