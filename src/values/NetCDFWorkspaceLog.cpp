#include <zorvodsg/values/NetCDFWorkspaceLog.h>

namespace ZorvoNetCDFDSG {

using ZorvoDSG::System::Message;

long NetCDFWorkspaceLog::cMessages() const { return static_cast<long>(m_messages.size()); }

// A negative or too large index fails with std::out_of_range instead of reading past the messages.
Message NetCDFWorkspaceLog::GetMessage(long index) const { return m_messages.at(static_cast<size_t>(index)); }

std::vector<Message> NetCDFWorkspaceLog::FindMessageRange(long minCode, long maxCode) const {
    std::vector<Message> found;
    for (const auto& message : m_messages) {
        if (message.m_code >= minCode && message.m_code <= maxCode) {
            found.push_back(message);
        }
    }
    return found;
}

void NetCDFWorkspaceLog::AddMessage(long code, const std::wstring& text) {
    if (m_bLogging) {
        m_messages.emplace_back(code, text);
    }
}

}  // namespace ZorvoNetCDFDSG
