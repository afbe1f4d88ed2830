#pragma once
// `zdsg workspace create|add|list|remove|reconcile|query`: catalogues of DSG files kept in a workspace
// directory (its conf.json), so that an archive is opened once and its feature classes listed and
// compared later.

#include <string>
#include <vector>

#include "ExitStatus.h"
#include "OpenFlags.h"

namespace CLI {
class App;
}

namespace zdsg {

struct WorkspaceOptions {
    std::string action;  // the subcommand given
    std::string directory;
    std::vector<std::string> paths;
    bool recursive = false;
    bool json = false;
    std::string type;  // query --type
    std::string name;  // query --name
    std::string ncml;
    std::string udunits;
    OpenFlags open;
};

CLI::App* AddWorkspaceCommand(CLI::App& app, WorkspaceOptions& options);

// 0 when the action was done for everything named; 1 when a file was refused, a path was not in the
// workspace, the workspace could not be opened or written, or nothing matched a query.
int RunWorkspace(const WorkspaceOptions& options);

}  // namespace zdsg
