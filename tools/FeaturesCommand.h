#pragma once
// `zdsg features PATH...`: the features of DSG files as CSV, GeoJSON or a GeoJSON text sequence.

#include <string>
#include <vector>

#include "OpenFlags.h"

#include "ExitStatus.h"

namespace CLI {
class App;
}

namespace zdsg {

struct FeaturesOptions {
    OpenFlags open;
    std::vector<std::string> paths;
    bool recursive = false;
    std::string format = "csv";  // csv, geojson, geojsonseq
    std::string bbox;            // XMIN,YMIN,XMAX,YMAX[,ZMIN,ZMAX]; empty: everything
    std::vector<std::string> vars;
    bool nativeCrs = false;
    std::string output;  // empty: standard output
    std::string ncml;
    std::string udunits;
};

// Adds the subcommand and its options to `app`; the options are filled in by parsing.
CLI::App* AddFeaturesCommand(CLI::App& app, FeaturesOptions& options);

// 0 when every dataset of every file gave its features; 1 when a file or dataset was refused, a
// path was missing, a --vars name is in no feature class, the NcML document or a named unit database
// could not be loaded, or the output could not be written.
int RunFeatures(const FeaturesOptions& options);

}  // namespace zdsg
