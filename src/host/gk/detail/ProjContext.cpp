#include <zorvodsg/host/gk/detail/ProjContext.h>

#include <algorithm>
#include <new>

namespace ZorvoDSG::Host::gk_detail {

namespace {
// Bounds the text kept from a chatty operation.
constexpr std::size_t kMaxLog = 4096;
}  // namespace

ProjContext::ProjContext() : m_ctx(proj_context_create()) {
    if (m_ctx == nullptr) {
        throw std::bad_alloc();
    }
    proj_log_func(m_ctx, this, &ProjContext::Log);
}

ProjContext::~ProjContext() {
    proj_context_destroy(m_ctx);
}

std::shared_ptr<ProjContext> const& ProjContext::Current() {
    thread_local std::shared_ptr<ProjContext> const context = std::make_shared<ProjContext>();
    return context;
}

std::string ProjContext::TakeLog() {
    std::string log;
    log.swap(m_log);
    return log;
}

// Called from inside PROJ: nothing may unwind through its C frames, so a text that cannot be kept
// (out of memory) is dropped.
void ProjContext::Log(void* self, int /*level*/, char const* message) noexcept {
    try {
        auto* context = static_cast<ProjContext*>(self);
        if (context == nullptr || message == nullptr || context->m_log.size() >= kMaxLog) {
            return;
        }
        if (!context->m_log.empty()) {
            context->m_log += "; ";
        }
        context->m_log.append(message, std::min(std::char_traits<char>::length(message),
                                                kMaxLog - context->m_log.size()));
    } catch (...) {
    }
}

}  // namespace ZorvoDSG::Host::gk_detail
