#include "Paths.h"

#include <algorithm>
#include <system_error>

namespace fs = std::filesystem;

namespace zdsg {

bool bNetCDFFileName(const fs::path& path) {
    const fs::path extension = path.extension();
    return extension == ".nc" || extension == ".nc4";
}

namespace {

std::string ErrorText(const std::error_code& error) { return error.message(); }

// Appends the netCDF files of one directory, sorted; a failure while walking is reported as a
// problem entry for the directory so that the run still ends with a non-zero status.
void WalkDirectory(const fs::path& directory, bool recursive, InputFiles& out) {
    std::vector<fs::path> found;
    std::error_code error;
    const auto options = fs::directory_options::skip_permission_denied;
    auto take = [&](const fs::directory_entry& entry) {
        std::error_code statusError;
        if (entry.is_regular_file(statusError) && bNetCDFFileName(entry.path())) {
            found.push_back(entry.path());
        }
    };
    if (recursive) {
        fs::recursive_directory_iterator it(directory, options, error);
        for (; !error && it != fs::recursive_directory_iterator(); it.increment(error)) {
            take(*it);
        }
    } else {
        fs::directory_iterator it(directory, options, error);
        for (; !error && it != fs::directory_iterator(); it.increment(error)) {
            take(*it);
        }
    }
    std::sort(found.begin(), found.end());
    for (auto& path : found) {
        out.files.push_back({std::move(path), {}});
    }
    if (error) {
        out.files.push_back({directory, "cannot read directory: " + ErrorText(error)});
    } else if (found.empty()) {
        out.emptyDirectories.push_back(directory);
    }
}

}  // namespace

InputFiles CollectInputFiles(const std::vector<std::string>& arguments, bool recursive) {
    InputFiles out;
    for (const auto& argument : arguments) {
        const fs::path path(argument);
        std::error_code error;
        const fs::file_status status = fs::status(path, error);
        if (status.type() == fs::file_type::not_found) {
            out.files.push_back({path, "no such file or directory"});
        } else if (error) {
            out.files.push_back({path, ErrorText(error)});
        } else if (fs::is_directory(status)) {
            WalkDirectory(path, recursive, out);
        } else if (fs::is_regular_file(status)) {
            out.files.push_back({path, {}});
        } else {
            // Opening a FIFO or a device could block or read forever.
            out.files.push_back({path, "not a regular file"});
        }
    }
    return out;
}

}  // namespace zdsg
