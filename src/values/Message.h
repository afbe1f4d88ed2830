#pragma once

#include <string>

namespace ZorvoDSG::System {

// One log entry: a small positive code and a text (a path, a name, a units text).
struct Message {
    Message(long code, const std::wstring& text) : m_code(code), m_text(text) {}

    long Code() const { return m_code; }
    const std::wstring& Text() const { return m_text; }

    long m_code;
    std::wstring m_text;
};

}  // namespace ZorvoDSG::System
