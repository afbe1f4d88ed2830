#pragma once

#include <vector>

#include <zorvodsg/values/ILog.h>

namespace ZorvoNetCDFDSG {

class NetCDFWorkspace;

// The log of a workspace's operations: messages in insertion order, optionally disabled.
class NetCDFWorkspaceLog final : public ZorvoDSG::System::ILog {
public:
    NetCDFWorkspaceLog() = default;
    NetCDFWorkspaceLog(const NetCDFWorkspaceLog&) = default;
    NetCDFWorkspaceLog& operator=(const NetCDFWorkspaceLog&) = default;
    ~NetCDFWorkspaceLog() = default;

    long cMessages() const override;
    ZorvoDSG::System::Message GetMessage(long index) const override;
    std::vector<ZorvoDSG::System::Message> FindMessageRange(long minCode, long maxCode) const override;
    void AddMessage(long code, const std::wstring& text) override;

private:
    friend class NetCDFWorkspace;
    friend struct NetCDFWorkspaceLogAccess;  // tests

    void EnableLogging(bool enable) { m_bLogging = enable; }
    void Clear() { m_messages.clear(); }

    std::vector<ZorvoDSG::System::Message> m_messages;
    bool m_bLogging = true;
};

}  // namespace ZorvoNetCDFDSG
