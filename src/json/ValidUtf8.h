#pragma once
// Texts from files are bytes as the file holds them; JSON documents must be valid UTF-8. Every JSON
// writer of the library and of `zdsg` makes texts valid through these two functions.

#include <string>
#include <string_view>

namespace ZorvoDSG {

// True when the bytes are well-formed UTF-8 (no overlong forms, surrogates or values past U+10FFFF).
bool bValidUtf8(std::string_view text);
// The text with every malformed byte replaced by U+FFFD; valid text comes back unchanged.
std::string ValidUtf8(std::string_view text);

}  // namespace ZorvoDSG
