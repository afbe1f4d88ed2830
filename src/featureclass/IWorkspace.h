#pragma once
// What a feature class needs of the workspace that opened its dataset: the log into which building
// the schema writes what it skipped.

#include <zorvodsg/values/ILog.h>

namespace ZorvoDSG {

class IWorkspace {
public:
    virtual System::ILog& CurrentLog() = 0;

protected:
    IWorkspace() = default;
    IWorkspace(const IWorkspace&) = default;
    IWorkspace& operator=(const IWorkspace&) = default;
    ~IWorkspace() = default;  // released through the shared pointer of the concrete workspace
};

}  // namespace ZorvoDSG
