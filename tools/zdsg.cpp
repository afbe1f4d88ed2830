// zdsg: command-line access to DSG netCDF files through ZorvoDSG.
#include <CLI/CLI.hpp>

#include <clocale>
#include <iostream>

#include "FeaturesCommand.h"
#include "InspectCommand.h"
#include "WorkspaceCommand.h"

int main(int argc, char** argv) {
    // Like other command-line tools zdsg runs in the user's locale (messages of the C library);
    // the library and the reports keep numbers in the C conventions whatever it is.
    std::setlocale(LC_ALL, "");
    CLI::App app{"zdsg: read CF Discrete Sampling Geometry netCDF files"};
    app.set_version_flag("--version", std::string("zdsg ") + ZDSG_VERSION);
    app.require_subcommand(0, 1);
    zdsg::InspectOptions inspectOptions;
    CLI::App* inspect = zdsg::AddInspectCommand(app, inspectOptions);
    zdsg::FeaturesOptions featuresOptions;
    CLI::App* features = zdsg::AddFeaturesCommand(app, featuresOptions);
    zdsg::WorkspaceOptions workspaceOptions;
    CLI::App* workspace = zdsg::AddWorkspaceCommand(app, workspaceOptions);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& e) {
        return app.exit(e) == 0 ? zdsg::eExitOk : zdsg::eExitUsage;
    }
    try {
        if (inspect->parsed()) {
            return zdsg::RunInspect(inspectOptions);
        }
        if (features->parsed()) {
            return zdsg::RunFeatures(featuresOptions);
        }
        if (workspace->parsed()) {
            return zdsg::RunWorkspace(workspaceOptions);
        }
    } catch (const std::exception& e) {
        // Files are guarded one by one; this is the tool itself failing (memory, output).
        std::cerr << "zdsg: " << e.what() << '\n';
        return zdsg::eExitRefused;
    }
    // No command: say what there is, and fail like any other incomplete command line.
    std::cerr << app.help();
    return zdsg::eExitUsage;
}
