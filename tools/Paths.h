#pragma once
// Turns the paths named on the command line into the list of files to open.

#include <filesystem>
#include <string>
#include <vector>

namespace zdsg {

struct InputFile {
    std::filesystem::path path;
    std::string problem;  // not empty: the path cannot be opened at all (missing, not a file, ...)
};

struct InputFiles {
    std::vector<InputFile> files;
    std::vector<std::filesystem::path> emptyDirectories;  // directories that held no netCDF file
};

// Whether a directory entry is taken: the extensions ".nc" and ".nc4", compared exactly.
bool bNetCDFFileName(const std::filesystem::path& path);

// Files named directly are taken whatever their extension; directories are walked for netCDF file
// names (subdirectories too when `recursive`), each directory's files sorted. Arguments keep their
// order. Symbolic links to directories are not followed while walking, so a link loop cannot recur.
InputFiles CollectInputFiles(const std::vector<std::string>& arguments, bool recursive);

}  // namespace zdsg
