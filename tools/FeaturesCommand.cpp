#include "FeaturesCommand.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <filesystem>
#include <iostream>
#include <memory>
#include <optional>

#include "ClassScan.h"
#include "ColumnPlan.h"
#include "CsvWriter.h"
#include "FeatureSources.h"
#include "GeoJsonWriter.h"
#include "Names.h"
#include "OutputFile.h"
#include "Paths.h"
#include "Progress.h"
#include "RunSetup.h"
#include <zorvodsg/featureclass/BasicFeatureClass.h>

using ZorvoDSG::Host::IXMLDOMDocument;

namespace fs = std::filesystem;

namespace zdsg {

namespace {

// What the first pass found in one file: the datasets that open as feature classes and what each
// of them writes. The second pass opens the file again and reads them; files stay closed in between,
// so that a run over many files never holds more than one open.
struct FilePlan {
    fs::path path;
    std::vector<size_t> datasets;
    std::vector<ClassSelection> selections;  // one per entry of `datasets`
};

void Report(const std::string& where, const std::string& text) {
    std::cerr << "zdsg: " << Printable(where) << ": " << Printable(text) << '\n';
}

// Null for zorvojson, which writes whole class documents rather than features.
std::unique_ptr<FeatureWriter> MakeWriter(const std::string& format, OutputFile& out, bool bNativeCrs) {
    if (format == "zorvojson") {
        return nullptr;
    }
    if (format == "csv") {
        return std::make_unique<CsvWriter>(out, bNativeCrs);
    }
    return std::make_unique<GeoJsonWriter>(out, format == "geojsonseq");
}

// Writing onto a file that is also read would destroy it before it is read.
std::optional<fs::path> InputAsOutput(const std::string& output, const InputFiles& inputs) {
    std::error_code error;
    if (output.empty() || output == "-" || !fs::exists(output, error)) {
        return std::nullopt;
    }
    for (const auto& input : inputs.files) {
        if (input.problem.empty() && fs::equivalent(input.path, output, error)) {
            return input.path;
        }
    }
    return std::nullopt;
}

}  // namespace

CLI::App* AddFeaturesCommand(CLI::App& app, FeaturesOptions& options) {
    CLI::App* features = app.add_subcommand("features", "Write the features of DSG files as CSV or GeoJSON");
    features->add_option("paths", options.paths, "netCDF files, or directories to search for .nc and .nc4 files")
        ->required();
    features->add_flag("-r,--recursive", options.recursive, "Search directories and their subdirectories");
    features->add_option("--format", options.format, "Output format")
        ->check(CLI::IsMember({"csv", "geojson", "geojsonseq", "zorvojson"}))
        ->capture_default_str();
    features
        ->add_option("--bbox", options.bbox,
                     "Only features in this box, in output coordinates (without Z bounds: X and Y only)")
        ->type_name("XMIN,YMIN,XMAX,YMAX[,ZMIN,ZMAX]")
        ->check(CLI::Validator(
            [](std::string& text) {
                std::string error;
                ParseBoundingBox(text, error);
                return error;
            },
            "", "bounding box"));
    features->add_option("--vars", options.vars, "Variables to write (default: every instance variable)")
        ->type_name("NAME,...")
        ->delimiter(',')
        ->allow_extra_args(false)  // one list per --vars: the paths that follow stay paths
        ->check(CLI::Validator(
            [](std::string& name) { return name.empty() ? std::string("empty variable name") : std::string(); }, "",
            "variable name"));
    features->add_flag("--native-crs", options.nativeCrs,
                       "Keep each class's own coordinates instead of longitude/latitude on WGS 84");
    features->add_option("-o,--output", options.output, "Write to FILE instead of standard output")
        ->type_name("FILE");
    features->add_option("--ncml", options.ncml, "NcML document applied to every file opened")
        ->check(CLI::ExistingFile);
    AddOpenFlags(*features, options.open);
    features->add_option("--udunits", options.udunits, "UDUNITS-2 XML database (default: found automatically)")
        ->check(CLI::ExistingFile);
    return features;
}

int RunFeatures(const FeaturesOptions& options) {
    RunResources resources;
    if (!LoadRunResources(options.udunits, options.ncml, resources)) {
        return eExitRefused;
    }
    IXMLDOMDocument* ncml = resources.ncml.get();
    const ZorvoNetCDFDSG::OpenOptions openOptions = MakeOpenOptions(options.open);
    std::string bboxError;  // checked while parsing the command line
    const std::optional<BoundingBox> bbox =
        options.bbox.empty() ? std::nullopt : ParseBoundingBox(options.bbox, bboxError);

    const InputFiles inputs = CollectInputFiles(options.paths, options.recursive);
    for (const auto& directory : inputs.emptyDirectories) {
        std::cerr << "zdsg: no .nc or .nc4 files in " << Printable(directory.string()) << '\n';
    }
    if (const auto input = InputAsOutput(options.output, inputs)) {
        std::cerr << "zdsg: the output " << Printable(options.output) << " is the input "
                  << Printable(input->string()) << '\n';
        return eExitRefused;
    }

    // First pass: which classes there are and which columns they bring, before anything is written.
    bool bRefused = false;
    ColumnPlan columns(options.vars);
    std::vector<FilePlan> plans;
    for (const auto& input : inputs.files) {
        if (!input.problem.empty()) {
            Report(input.path.string(), input.problem);
            bRefused = true;
            continue;
        }
        const OpenedFile opened = OpenFeatureClasses(input.path, ncml, openOptions);
        for (const auto& refusal : opened.refusals) {
            Report(refusal.where, refusal.text);
            bRefused = true;
        }
        FilePlan plan{input.path, {}, {}};
        for (const auto& openedClass : opened.classes) {
            plan.datasets.push_back(openedClass.dataset);
            plan.selections.push_back(columns.Select(*openedClass.featureClass));
        }
        if (!plan.datasets.empty()) {
            plans.push_back(std::move(plan));
        }
    }
    if (!plans.empty()) {
        const std::vector<std::string> unmatched = columns.UnmatchedRequests();
        for (const auto& name : unmatched) {
            std::cerr << "zdsg: --vars: no feature class has a variable named '" << Printable(name) << "'\n";
        }
        if (!unmatched.empty()) {
            return eExitRefused;
        }
    }

    // Second pass: the features.
    std::optional<Progress> progress;
    try {
        OutputFile out(options.output);
        const std::unique_ptr<FeatureWriter> writer = MakeWriter(options.format, out, options.nativeCrs);
        // On a terminal the progress line would run through the output itself.
        progress.emplace(plans.size(), bStderrTerminal() && !out.bTerminal());
        if (writer) {
            writer->Begin(columns.Columns());
        } else {
            out.Write("[");  // zorvojson: one array of the classes' documents
        }
        bool bFirstDocument = true;
        ScanSettings settings;
        settings.bbox = bbox;
        settings.bNativeCrs = options.nativeCrs;
        settings.cColumns = columns.Columns().size();
        size_t done = 0;
        for (const auto& plan : plans) {
            const std::string path = plan.path.string();
            progress->Show(done, path);
            settings.progress = [&](uint64_t count) {
                progress->Show(done, path + ": " + std::to_string(count) + " features");
            };
            const OpenedFile opened = OpenFeatureClasses(plan.path, ncml, openOptions, &plan.datasets);
            for (const auto& refusal : opened.refusals) {
                progress->Clear();
                Report(refusal.where, refusal.text);
                bRefused = true;
            }
            for (const auto& openedClass : opened.classes) {
                const auto at = std::find(plan.datasets.begin(), plan.datasets.end(), openedClass.dataset);
                const auto& selection = plan.selections[static_cast<size_t>(at - plan.datasets.begin())];
                try {
                    if (writer) {
                        ScanClass(*openedClass.featureClass, selection, settings, *writer);
                    } else {
                        bool bWritten = false;
                        try {
                            WriteZorvoJSON(*openedClass.featureClass, selection, settings,
                                           bFirstDocument ? "\n" : ",\n", out, bWritten);
                        } catch (...) {
                            bFirstDocument = bFirstDocument && !bWritten;
                            throw;
                        }
                        bFirstDocument = false;
                    }
                } catch (const OutputError&) {
                    throw;
                } catch (...) {
                    progress->Clear();
                    Report(openedClass.where, CurrentExceptionText(plan.path));
                    bRefused = true;
                }
            }
            ++done;
        }
        progress->Clear();
        if (writer) {
            writer->End();
        } else {
            out.Write("\n]\n");
        }
        out.Close();
    } catch (const OutputError& e) {
        if (progress) {
            progress->Clear();
        }
        std::cerr << "zdsg: " << Printable(e.what()) << '\n';
        return eExitRefused;
    }
    return bRefused ? eExitRefused : eExitOk;
}

}  // namespace zdsg
