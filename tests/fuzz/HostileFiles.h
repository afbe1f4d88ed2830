#pragma once
// Writes netCDF files built to break a reader: sizes, counts, widths and references that a file's
// author controls, set to what no honest file holds.

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace zdsg_test {

struct HostileFile {
    std::string name;
    // Writes the file at the path; netCDF-C failures fail the test that asked for it.
    std::function<void(const std::filesystem::path&)> write;
};

// Every hostile file the generator knows.
const std::vector<HostileFile>& HostileFiles();

}  // namespace zdsg_test
