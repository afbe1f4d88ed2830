#pragma once
// `zdsg inspect PATH...`: what DSG files hold and how the library reads them.

#include <string>
#include <vector>

#include "OpenFlags.h"
#include "ExitStatus.h"

namespace CLI {
class App;
}

namespace zdsg {

struct InspectOptions {
    std::vector<std::string> paths;
    bool recursive = false;
    bool json = false;
    bool wkt = false;
    std::string ncml;
    std::string udunits;
    OpenFlags open;
};

// Adds the subcommand and its options to `app`; the options are filled in by parsing.
CLI::App* AddInspectCommand(CLI::App& app, InspectOptions& options);

// 0 when every file was read, 1 when a file was refused, a path was missing, or the NcML document or
// the unit database named on the command line could not be loaded.
int RunInspect(const InspectOptions& options);

}  // namespace zdsg
