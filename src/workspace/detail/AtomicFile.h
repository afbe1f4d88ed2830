#pragma once
// Replaces a file's content so that a reader (or a crash) sees either the old content or the new,
// never a mixture or nothing: the text goes into a temporary file of the same directory, is flushed
// to the disk and renamed over the file.

#include <filesystem>
#include <string_view>

namespace ZorvoNetCDFDSG::detail {

// Throws std::filesystem::filesystem_error (the operation, the path and the system's error) when the
// text cannot be written; the file is then left as it was and the temporary file removed.
void ReplaceFileContent(const std::filesystem::path& path, std::string_view text);

}  // namespace ZorvoNetCDFDSG::detail
