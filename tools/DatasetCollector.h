#pragma once
// Opens one file through the library and records what it reads there.

#include <filesystem>

#include "DatasetReport.h"
#include <zorvodsg/netcdf/OpenOptions.h>

namespace ZorvoDSG::Host {
class IXMLDOMDocument;
}  // namespace ZorvoDSG::Host

namespace zdsg {

// Never throws for anything the file holds: a file the library refuses is reported as refused, and a
// part of a dataset it cannot describe as an error of that dataset.
FileReport InspectFile(const std::filesystem::path& path, ZorvoDSG::Host::IXMLDOMDocument* ncml,
                       const ZorvoNetCDFDSG::OpenOptions& options);

}  // namespace zdsg
