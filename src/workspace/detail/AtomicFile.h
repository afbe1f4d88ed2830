#pragma once
// Replaces a file's content so that a reader (or a crash) sees either the old content or the new,
// never a mixture or nothing: the text goes into a temporary file of the same directory, is flushed
// to the disk and renamed over the file.

#include <cstddef>
#include <filesystem>
#include <string_view>

namespace ZorvoNetCDFDSG::detail {

// The temporary file is the file's name, this marker and six random characters. The marker keeps
// the names apart from a user's own "conf.json.backup", which must never be taken for a leftover.
inline constexpr std::string_view kTemporaryMarker = ".zdsg-tmp-";
inline constexpr size_t kTemporaryRandomChars = 6;

// Whether `name` is a temporary file ReplaceFileContent makes for a file named `target`.
bool bTemporaryFileName(std::string_view name, std::string_view target);

// Throws std::filesystem::filesystem_error (the operation, the path and the system's error) when the
// text cannot be written; the file is then left as it was and the temporary file removed.
void ReplaceFileContent(const std::filesystem::path& path, std::string_view text);

}  // namespace ZorvoNetCDFDSG::detail
