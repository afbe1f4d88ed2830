#pragma once
// What a host passes to a long operation so that it can be asked to stop early. The operations that
// take one may ignore it; none of them stops halfway through a change.

namespace ZorvoDSG::Host {

class ITrackCancel {
public:
    // False once the host wants the operation to stop.
    virtual bool Continue() = 0;

protected:
    ITrackCancel() = default;
    ITrackCancel(const ITrackCancel&) = default;
    ITrackCancel& operator=(const ITrackCancel&) = default;
    ~ITrackCancel() = default;
};

}  // namespace ZorvoDSG::Host
