#pragma once
// ASCII-only case folding. Names in CF files and NcML documents compare without regard to case in the
// ASCII letters only; the C library's tolower would follow the host's locale instead.

#include <string>
#include <string_view>

namespace ZorvoDSG::System {

template <typename Char>
constexpr Char AsciiLower(Char c) noexcept {
    return (c >= Char('A') && c <= Char('Z')) ? static_cast<Char>(c - Char('A') + Char('a')) : c;
}

template <typename Char>
std::basic_string<Char> AsciiLower(std::basic_string_view<Char> text) {
    std::basic_string<Char> lower(text);
    for (Char& c : lower) {
        c = AsciiLower(c);
    }
    return lower;
}
inline std::string AsciiLower(const std::string& text) { return AsciiLower(std::string_view(text)); }
inline std::wstring AsciiLower(const std::wstring& text) { return AsciiLower(std::wstring_view(text)); }

// Equal when folded to lower case.
constexpr bool AsciiIEquals(std::string_view a, std::string_view b) noexcept {
    if (a.size() != b.size()) {
        return false;
    }
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (AsciiLower(a[i]) != AsciiLower(b[i])) {
            return false;
        }
    }
    return true;
}

}  // namespace ZorvoDSG::System
