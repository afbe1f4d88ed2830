#pragma once
// The calling thread's PROJ context, with its log captured instead of printed.

#include <memory>
#include <string>

#include <proj.h>

namespace ZorvoDSG::Host::gk_detail {

class ProjContext {
public:
    ProjContext();
    ~ProjContext();
    ProjContext(ProjContext const&) = delete;
    ProjContext& operator=(ProjContext const&) = delete;

    // Created on the thread's first call. Objects keep a reference, so a context outlives its
    // thread while PROJ objects made on it are alive.
    static std::shared_ptr<ProjContext> const& Current();

    PJ_CONTEXT* get() const noexcept { return m_ctx; }

    // Log text collected since the last call.
    std::string TakeLog();

private:
    static void Log(void* self, int level, char const* message) noexcept;

    PJ_CONTEXT* m_ctx;
    std::string m_log;
};

// Shorthand for the current thread's raw context.
inline PJ_CONTEXT* Ctx() { return ProjContext::Current()->get(); }

}  // namespace ZorvoDSG::Host::gk_detail
