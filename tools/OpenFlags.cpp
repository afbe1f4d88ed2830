#include "OpenFlags.h"

#include <CLI/CLI.hpp>

namespace zdsg {

void AddOpenFlags(CLI::App& command, OpenFlags& flags) {
    command.add_flag("--strict-time-units", flags.strictTimeUnits,
                     "Read time units by the library's default grammar instead of ISO 8601");
}

ZorvoNetCDFDSG::OpenOptions MakeOpenOptions(const OpenFlags& flags) {
    ZorvoNetCDFDSG::OpenOptions options;
    options.bIsoTimeUnits = !flags.strictTimeUnits;
    return options;
}

std::string TimeUnitsReadingName(const ZorvoNetCDFDSG::OpenOptions& options) {
    return options.bIsoTimeUnits ? "iso8601" : "strict";
}

std::string TimeUnitsReadingText(const ZorvoNetCDFDSG::OpenOptions& options) {
    return options.bIsoTimeUnits ? "ISO 8601 reading" : "strict reading (--strict-time-units)";
}

}  // namespace zdsg
