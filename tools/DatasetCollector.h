#pragma once
// Opens one file through the library and records what it reads there.

#include <filesystem>

#include "DatasetReport.h"
#include "netcdf/OpenOptions.h"

class IXMLDOMDocument;

namespace zdsg {

// Never throws for anything the file holds: a file the library refuses is reported as refused, and a
// part of a dataset it cannot describe as an error of that dataset.
FileReport InspectFile(const std::filesystem::path& path, IXMLDOMDocument* ncml,
                       const ZorvoNetCDFDSG::OpenOptions& options);

}  // namespace zdsg
