#pragma once
// What each fuzz target does with one input, as plain functions: the libFuzzer entry points call
// them, and the test suite replays the files of fuzz/regressions/ through them. Each returns
// normally for every input the library refuses in a documented way (an Exception, a log message);
// anything else (a crash, a sanitizer report, another exception type) is a finding.

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace zdsg_fuzz {

// Loads the unit database once (the targets read coordinates the way a host does).
void InitOnce(const std::filesystem::path& udunits2Xml);

// What ReadEverything did with a file.
struct ReadSummary {
    size_t cDatasets = 0;
    size_t cClasses = 0;
    uint64_t cFeatures = 0;
    std::vector<std::string> refusals;  // the texts of the Exceptions that refused the file or a dataset
};

// Every dataset of the file at `path` opened as a feature class, searched to the end with every
// instance and observation variable, each feature and the class written as ZorvoJSON.
ReadSummary ReadEverything(const std::filesystem::path& path);

// A netCDF file image: written to a temporary file and read as ReadEverything reads. Only classic,
// 64-bit-offset and CDF5 images are taken (HDF5's own parser is not this project's to harden).
void FuzzNetCDFImage(const uint8_t* data, size_t size);
// An NcML document applied to `file` (a fixed, valid DSG file), then read as ReadEverything reads.
void FuzzNcML(const uint8_t* data, size_t size, const std::filesystem::path& file);
// A units text through the unit parser and queries, and a time-units text through both readings
// of time units and their conversions.
void FuzzUnits(const uint8_t* data, size_t size);

}  // namespace zdsg_fuzz
