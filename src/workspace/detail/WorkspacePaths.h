#pragma once
// How the workspace compares the paths of entries and files: lexically normalised (redundant
// separators, "." and ".." resolved, no trailing separator), never made absolute, and component by
// component, so that "/data/a" never contains "/data/ab".

#include <filesystem>

namespace ZorvoNetCDFDSG::detail {

std::filesystem::path NormalisedPath(const std::filesystem::path& path);
bool bSamePath(const std::filesystem::path& a, const std::filesystem::path& b);
// True when `path` is `directory` or lies below it.
bool bInsideDirectory(const std::filesystem::path& path, const std::filesystem::path& directory);
// A regular file whose extension is exactly ".nc" or ".nc4".
bool bHasNetCDFExtension(const std::filesystem::path& path);

}  // namespace ZorvoNetCDFDSG::detail
