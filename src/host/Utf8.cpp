#include <zorvodsg/host/Utf8.h>

#include <cstdint>

namespace ZorvoDSG::Host {

namespace {

constexpr char32_t kReplacement = 0xFFFD;

bool IsContinuation(unsigned char c) { return (c & 0xC0) == 0x80; }

// Decodes one code point at `i` and advances `i`; malformed sequences consume one byte.
char32_t DecodeOne(std::string_view s, size_t& i) {
    const auto lead = static_cast<unsigned char>(s[i]);
    if (lead < 0x80) {
        ++i;
        return lead;
    }
    size_t length;
    char32_t cp;
    char32_t minimum;
    if ((lead & 0xE0) == 0xC0) {
        length = 2, cp = lead & 0x1F, minimum = 0x80;
    } else if ((lead & 0xF0) == 0xE0) {
        length = 3, cp = lead & 0x0F, minimum = 0x800;
    } else if ((lead & 0xF8) == 0xF0) {
        length = 4, cp = lead & 0x07, minimum = 0x10000;
    } else {
        ++i;
        return kReplacement;
    }
    if (i + length > s.size()) {
        ++i;
        return kReplacement;
    }
    for (size_t k = 1; k < length; ++k) {
        const auto c = static_cast<unsigned char>(s[i + k]);
        if (!IsContinuation(c)) {
            ++i;
            return kReplacement;
        }
        cp = (cp << 6) | (c & 0x3F);
    }
    if (cp < minimum || cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF)) {
        ++i;
        return kReplacement;
    }
    i += length;
    return cp;
}

void AppendUtf8(std::string& out, char32_t cp) {
    if (cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF)) {
        cp = kReplacement;
    }
    if (cp < 0x80) {
        out += static_cast<char>(cp);
    } else if (cp < 0x800) {
        out += static_cast<char>(0xC0 | (cp >> 6));
        out += static_cast<char>(0x80 | (cp & 0x3F));
    } else if (cp < 0x10000) {
        out += static_cast<char>(0xE0 | (cp >> 12));
        out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (cp & 0x3F));
    } else {
        out += static_cast<char>(0xF0 | (cp >> 18));
        out += static_cast<char>(0x80 | ((cp >> 12) & 0x3F));
        out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (cp & 0x3F));
    }
}

}  // namespace

std::wstring Utf8ToWide(std::string_view utf8) {
    std::wstring out;
    out.reserve(utf8.size());
    for (size_t i = 0; i < utf8.size();) {
        const char32_t cp = DecodeOne(utf8, i);
        if constexpr (sizeof(wchar_t) >= 4) {
            out += static_cast<wchar_t>(cp);
        } else if (cp >= 0x10000) {
            const char32_t v = cp - 0x10000;
            out += static_cast<wchar_t>(0xD800 + (v >> 10));
            out += static_cast<wchar_t>(0xDC00 + (v & 0x3FF));
        } else {
            out += static_cast<wchar_t>(cp);
        }
    }
    return out;
}

std::string WideToUtf8(std::wstring_view wide) {
    std::string out;
    out.reserve(wide.size());
    for (size_t i = 0; i < wide.size(); ++i) {
        auto cp = static_cast<char32_t>(static_cast<std::make_unsigned_t<wchar_t>>(wide[i]));
        if constexpr (sizeof(wchar_t) < 4) {
            // Combine a UTF-16 surrogate pair; a lone surrogate becomes U+FFFD below.
            if (cp >= 0xD800 && cp <= 0xDBFF && i + 1 < wide.size()) {
                const auto low = static_cast<char32_t>(static_cast<uint16_t>(wide[i + 1]));
                if (low >= 0xDC00 && low <= 0xDFFF) {
                    cp = 0x10000 + ((cp - 0xD800) << 10) + (low - 0xDC00);
                    ++i;
                }
            }
        }
        AppendUtf8(out, cp);
    }
    return out;
}

bool bIsValidUtf8(std::string_view text) { return WideToUtf8(Utf8ToWide(text)) == text; }

}  // namespace ZorvoDSG::Host
