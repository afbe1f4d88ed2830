#pragma once
// conf.json, the file in which a workspace directory keeps its state: reading it back and the files
// that writing it leaves.

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

namespace ZorvoNetCDFDSG::detail {

inline constexpr const char* kConfFileName = "conf.json";
// conf.json of a workspace of a hundred thousand entries is a few megabytes.
inline constexpr std::uintmax_t kMaxConfBytes = 64u << 20;

struct ConfEntry {
    std::filesystem::path path;
    bool includeSubdirs = false;
};

struct ConfContent {
    std::string version;
    std::vector<ConfEntry> entries;
};

// The text of conf.json; ZorvoDSG::Exception eNotANetCDFWorkspace when it cannot be read or is larger
// than kMaxConfBytes.
std::string ReadConfText(const std::filesystem::path& path);
// The version and entries of a conf.json text; std::runtime_error with the reason when the text is
// not a conf.json this library wrote ("files" is not read: it is found again from the entries).
ConfContent ParseConf(const std::string& text);
// Removes conf.json and the temporary files a failed write may have left next to it.
void RemoveConfFiles(const std::filesystem::path& directory);

}  // namespace ZorvoNetCDFDSG::detail
