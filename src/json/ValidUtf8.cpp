#include <zorvodsg/json/ValidUtf8.h>

#include <zorvodsg/host/Utf8.h>

namespace ZorvoDSG {

bool bValidUtf8(std::string_view text) {
    const auto* s = reinterpret_cast<const unsigned char*>(text.data());
    const size_t n = text.size();
    size_t i = 0;
    while (i < n) {
        const unsigned char lead = s[i];
        if (lead < 0x80) {
            ++i;
            continue;
        }
        size_t length;
        // The second byte's range excludes overlong forms, surrogates and values past U+10FFFF.
        unsigned char low = 0x80;
        unsigned char high = 0xBF;
        if (lead >= 0xC2 && lead <= 0xDF) {
            length = 2;
        } else if (lead >= 0xE0 && lead <= 0xEF) {
            length = 3;
            low = lead == 0xE0 ? 0xA0 : 0x80;
            high = lead == 0xED ? 0x9F : 0xBF;
        } else if (lead >= 0xF0 && lead <= 0xF4) {
            length = 4;
            low = lead == 0xF0 ? 0x90 : 0x80;
            high = lead == 0xF4 ? 0x8F : 0xBF;
        } else {
            return false;
        }
        if (n - i < length || s[i + 1] < low || s[i + 1] > high) {
            return false;
        }
        for (size_t k = 2; k < length; ++k) {
            if ((s[i + k] & 0xC0) != 0x80) {
                return false;
            }
        }
        i += length;
    }
    return true;
}

std::string ValidUtf8(std::string_view text) {
    if (bValidUtf8(text)) {
        return std::string(text);
    }
    return Host::WideToUtf8(Host::Utf8ToWide(text));
}

}  // namespace ZorvoDSG
