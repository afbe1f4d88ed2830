#pragma once
// Command-line flags that choose how the library opens files (NetCDFFile::s_Open's OpenOptions),
// shared by every command that opens files so that they read files alike.

#include <string>

#include <zorvodsg/netcdf/OpenOptions.h>

namespace CLI {
class App;
}

namespace zdsg {

struct OpenFlags {
    bool strictTimeUnits = false;
};

// Adds --strict-time-units to `command`.
void AddOpenFlags(CLI::App& command, OpenFlags& flags);

// The tool reads time units as ISO 8601 as well, unless --strict-time-units was given.
ZorvoNetCDFDSG::OpenOptions MakeOpenOptions(const OpenFlags& flags);

// How `options` read time units: "iso8601" or "strict" for JSON, a phrase for text reports.
std::string TimeUnitsReadingName(const ZorvoNetCDFDSG::OpenOptions& options);
std::string TimeUnitsReadingText(const ZorvoNetCDFDSG::OpenOptions& options);

}  // namespace zdsg
