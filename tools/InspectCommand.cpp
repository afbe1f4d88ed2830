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
#include "TextReport.h"
#include "UnitDatabase.h"
#include <zorvodsg/workspace/NetCDFWorkspace.h>

using ZorvoDSG::Host::IXMLDOMDocumentPtr;

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
    inspect->add_option("--ncml", options.ncml, "NcML document applied to every file opened")
        ->check(CLI::ExistingFile);
    inspect->add_option("--udunits", options.udunits, "UDUNITS-2 XML database (default: found automatically)")
        ->check(CLI::ExistingFile);
    return inspect;
}

int RunInspect(const InspectOptions& options) {
    RunInfo info;
    info.version = ZDSG_VERSION;

    std::string unitError;
    info.udunits2 = LoadUDUnits2(options.udunits, unitError);
    if (!info.udunits2) {
        std::cerr << "zdsg: " << Printable(unitError) << '\n';
        if (!options.udunits.empty()) {
            return eExitRefused;
        }
    }

    // Opened once, before any file: a broken document would make every file fail the same way.
    IXMLDOMDocumentPtr ncml;
    if (!options.ncml.empty()) {
        try {
            ncml = ZorvoNetCDFDSG::NetCDFWorkspace::s_OpenNcMLDocument(options.ncml);
        } catch (...) {
            std::cerr << "zdsg: " << Printable(CurrentExceptionText()) << '\n';
            return eExitRefused;
        }
        info.ncml = options.ncml;
    }

    const InputFiles inputs = CollectInputFiles(options.paths, options.recursive);
    for (const auto& directory : inputs.emptyDirectories) {
        std::cerr << "zdsg: no .nc or .nc4 files in " << Printable(directory.string()) << '\n';
    }

    std::unique_ptr<Report> report;
    if (options.json) {
        report = std::make_unique<JsonReport>(std::cout);
    } else {
        report = std::make_unique<TextReport>(std::cout, bColourWanted());
    }
    report->Begin(info);
    Summary summary;
    Progress progress(inputs.files.size());
    size_t done = 0;
    for (const auto& input : inputs.files) {
        progress.Show(done, input.path.string());
        FileReport file;
        if (input.problem.empty()) {
            file = InspectFile(input.path, ncml.get());
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
