#include "InspectCommand.h"

#include <CLI/CLI.hpp>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <iostream>
#include <memory>
#include <string>

#include "DatasetCollector.h"
#include "JsonReport.h"
#include "Names.h"
#include "Paths.h"
#include "Progress.h"
#include "RunSetup.h"
#include "TextReport.h"

using ZorvoDSG::Host::IXMLDOMDocument;


#ifndef ZDSG_VERSION
#define ZDSG_VERSION "unknown"
#endif

namespace zdsg {

CLI::App* AddInspectCommand(CLI::App& app, InspectOptions& options) {
    CLI::App* inspect = app.add_subcommand("inspect", "Show what DSG files hold and how ZorvoDSG reads them");
    inspect->add_option("paths", options.paths, "netCDF files, or directories to search for .nc and .nc4 files")
        ->required();
    inspect->add_flag("-r,--recursive", options.recursive, "Search directories and their subdirectories");
    inspect->add_flag("--json", options.json, "Write one JSON document instead of text");
    inspect->add_flag("--wkt", options.wkt, "Print the full WKT of each coordinate system in the text report");
    inspect->add_option("--ncml", options.ncml, "NcML document applied to every file opened")
        ->check(CLI::ExistingFile);
    inspect->add_option("--udunits", options.udunits, "UDUNITS-2 XML database (default: found automatically)")
        ->check(CLI::ExistingFile);
    AddOpenFlags(*inspect, options.open);
    return inspect;
}

int RunInspect(const InspectOptions& options) {
    RunInfo info;
    info.version = ZDSG_VERSION;
    info.openOptions = MakeOpenOptions(options.open);

    RunResources resources;
    if (!LoadRunResources(options.udunits, options.ncml, resources)) {
        return eExitRefused;
    }
    info.udunits2 = resources.udunits2;
    info.ncml = resources.ncmlPath;
    IXMLDOMDocument* ncml = resources.ncml.get();

    const InputFiles inputs = CollectInputFiles(options.paths, options.recursive);
    for (const auto& directory : inputs.emptyDirectories) {
        std::cerr << "zdsg: no .nc or .nc4 files in " << Printable(directory.string()) << '\n';
    }

    std::unique_ptr<Report> report;
    if (options.json) {
        report = std::make_unique<JsonReport>(std::cout);
    } else {
        report = std::make_unique<TextReport>(std::cout, bColourWanted(), options.wkt);
    }
    report->Begin(info);
    Summary summary;
    Progress progress(inputs.files.size(), inputs.files.size() > 1 && bStderrTerminal());
    size_t done = 0;
    for (const auto& input : inputs.files) {
        progress.Show(done, input.path.string());
        FileReport file;
        if (input.problem.empty()) {
            file = InspectFile(input.path, ncml, info.openOptions);
        } else {
            file.path = input.path.string();
            file.error = input.problem;
        }
        ++done;
        progress.Clear();
        report->File(file);
        summary.Add(file);
        if (!file.read) {
            // The report has it too; stderr tells whoever only looks there, as other tools do.
            std::cerr << "zdsg: " << Printable(file.path) << ": " << Printable(file.error) << '\n';
        }
    }
    progress.Clear();
    report->End(summary);
    // A report that could not be written (a full disk, a closed pipe) is a failure, not a success.
    errno = 0;
    std::cout.flush();
    if (!std::cout || std::fflush(stdout) != 0 || std::ferror(stdout) != 0) {
        const int error = errno;
        std::cerr << "zdsg: cannot write the report" << (error != 0 ? std::string(": ") + std::strerror(error) : "")
                  << '\n';
        return eExitRefused;
    }
    return summary.refused == 0 ? eExitOk : eExitRefused;
}

}  // namespace zdsg
