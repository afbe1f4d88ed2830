#pragma once
// The host framework's owning wide string.

#include <string>

#include <zorvodsg/host/StringTable.h>

namespace ZorvoDSG::Host {

class BString {
public:
    BString() = default;
    BString(const wchar_t* text) : m_text(text ? text : L"") {}  // NOLINT: implicit like the host's
    BString(std::wstring text) : m_text(std::move(text)) {}      // NOLINT
    // The string resource `id` of `module` (empty when it has none).
    BString(int id, HMODULE module) : m_text(LoadResourceString(module, id)) {}

    BString& operator+=(const BString& other) {
        m_text += other.m_text;
        return *this;
    }
    operator const wchar_t*() const { return m_text.c_str(); }  // NOLINT: used where a BSTR is expected

    const std::wstring& Str() const { return m_text; }
    size_t Length() const { return m_text.size(); }
    bool operator==(const BString& other) const { return m_text == other.m_text; }

private:
    std::wstring m_text;
};

}  // namespace ZorvoDSG::Host
