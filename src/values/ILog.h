#pragma once
// A list of numbered messages into which long-running operations write what they skipped or
// repaired while carrying on. Owned through shared pointers created for the concrete type.

#include <string>
#include <vector>

#include <zorvodsg/values/Message.h>

namespace ZorvoDSG::System {

class ILog {
public:
    virtual long cMessages() const = 0;
    virtual Message GetMessage(long index) const = 0;
    // Messages whose code lies in [minCode, maxCode], in insertion order.
    virtual std::vector<Message> FindMessageRange(long minCode, long maxCode) const = 0;
    virtual void AddMessage(long code, const std::wstring& text) = 0;

protected:
    ILog() = default;
    ILog(const ILog&) = default;
    ILog(ILog&&) = default;
    ILog& operator=(const ILog&) = default;
    ILog& operator=(ILog&&) = default;
    ~ILog() = default;  // never deleted through the interface
};

}  // namespace ZorvoDSG::System
