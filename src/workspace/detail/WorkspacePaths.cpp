#include <zorvodsg/workspace/detail/WorkspacePaths.h>

#include <algorithm>

namespace ZorvoNetCDFDSG::detail {

std::filesystem::path NormalisedPath(const std::filesystem::path& path) {
    std::filesystem::path normal = path.lexically_normal();
    if (!normal.has_filename() && normal.has_relative_path()) {
        normal = normal.parent_path();  // "dir/" names the same directory as "dir"
    }
    return normal;
}

bool bSamePath(const std::filesystem::path& a, const std::filesystem::path& b) {
    return NormalisedPath(a) == NormalisedPath(b);
}

bool bInsideDirectory(const std::filesystem::path& path, const std::filesystem::path& directory) {
    const std::filesystem::path inner = NormalisedPath(path);
    const std::filesystem::path outer = NormalisedPath(directory);
    auto innerPart = inner.begin();
    for (const auto& part : outer) {
        if (innerPart == inner.end() || *innerPart != part) {
            return false;
        }
        ++innerPart;
    }
    return true;
}

bool bHasNetCDFExtension(const std::filesystem::path& path) {
    const std::filesystem::path extension = path.extension();
    return extension == ".nc" || extension == ".nc4";
}

}  // namespace ZorvoNetCDFDSG::detail
