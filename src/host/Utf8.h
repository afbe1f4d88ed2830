#pragma once
// UTF-8 <-> wide text, code point for code point, independent of the C locale.
// Malformed input (invalid or overlong sequences, surrogates, values above U+10FFFF) becomes U+FFFD.

#include <string>
#include <string_view>

namespace ZorvoDSG::Host {

std::wstring Utf8ToWide(std::string_view utf8);
std::string WideToUtf8(std::wstring_view wide);
// Whether the bytes are well-formed UTF-8 (they then survive a round trip through wide text).
bool bIsValidUtf8(std::string_view text);

}  // namespace ZorvoDSG::Host
