#include <zorvodsg/workspace/detail/DirectoryScan.h>

#include <algorithm>

#include <zorvodsg/workspace/detail/WorkspacePaths.h>

namespace ZorvoNetCDFDSG::detail {

std::vector<std::filesystem::path> ScanNetCDFFiles(
    const std::filesystem::path& directory, bool includeSubdirs,
    const std::function<void(const std::filesystem::path&, const std::error_code&)>& unreadable) {
    std::vector<std::filesystem::path> files;
    std::vector<std::filesystem::path> pending{directory};
    while (!pending.empty()) {
        const std::filesystem::path current = std::move(pending.back());
        pending.pop_back();
        std::error_code ec;
        std::filesystem::directory_iterator item(current, ec);
        if (ec && current == directory) {
            throw std::filesystem::filesystem_error("cannot read the directory", current, ec);
        }
        for (; !ec && item != std::filesystem::directory_iterator(); item.increment(ec)) {
            std::error_code ignored;  // an entry whose type cannot be told is not taken
            if (item->is_symlink(ignored)) {
                continue;
            }
            if (item->is_directory(ignored)) {
                if (includeSubdirs) {
                    pending.push_back(item->path());
                }
            } else if (item->is_regular_file(ignored) && bHasNetCDFExtension(item->path())) {
                files.push_back(item->path());
            }
        }
        if (ec) {
            unreadable(current, ec);
        }
    }
    std::sort(files.begin(), files.end());
    return files;
}

}  // namespace ZorvoNetCDFDSG::detail
