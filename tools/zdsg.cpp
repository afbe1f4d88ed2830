// zdsg: command-line access to DSG netCDF files through ZorvoDSG.
#include <CLI/CLI.hpp>

#include <iostream>

int main(int argc, char** argv) {
    CLI::App app{"zdsg: read CF Discrete Sampling Geometry netCDF files"};
    app.set_version_flag("--version", std::string("zdsg ") + ZDSG_VERSION);
    app.require_subcommand(0, 1);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& e) {
        return app.exit(e) == 0 ? 0 : 2;
    }
    if (argc == 1) {
        std::cout << app.help();
    }
    return 0;
}
