#pragma once
// Group names as NcML documents write them ("obs", "/obs", "obs/", "/a/b") compared with the full
// group names of the datasets ("/obs/", "/a/b/").

#include <string>
#include <string_view>

namespace ZorvoNetCDFDSG::detail {

// The name with a leading and a trailing "/": "a/b" -> "/a/b/". "" and "/" both give "/", the root.
inline std::string NormalizedGroupName(std::string_view name) {
    std::string full;
    full.reserve(name.size() + 2);
    if (!name.starts_with('/')) {
        full += '/';
    }
    full += name;
    if (!full.ends_with('/')) {
        full += '/';
    }
    return full;
}

}  // namespace ZorvoNetCDFDSG::detail
