#pragma once
// The files a directory entry stands for: those ending exactly in ".nc" or ".nc4", in the directory
// and, when asked, in its subdirectories. Links are skipped, whatever they point at, so a link loop
// cannot recur.

#include <filesystem>
#include <functional>
#include <system_error>
#include <vector>

namespace ZorvoNetCDFDSG::detail {

// The files in name order. The directory itself must be readable (else std::filesystem::
// filesystem_error); a subdirectory that cannot be read is handed to `unreadable` and the scan goes
// on without it, so that one closed folder of an archive does not hide the rest.
std::vector<std::filesystem::path> ScanNetCDFFiles(
    const std::filesystem::path& directory, bool includeSubdirs,
    const std::function<void(const std::filesystem::path&, const std::error_code&)>& unreadable);

}  // namespace ZorvoNetCDFDSG::detail
