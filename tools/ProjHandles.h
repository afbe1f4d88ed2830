#pragma once
// Owning handles for the PROJ objects the tool makes on its own context. A context must outlive the
// objects made on it: declare it first, so that it is destroyed last.

#include <proj.h>

#include <memory>

namespace zdsg {

struct ProjContextDeleter {
    void operator()(PJ_CONTEXT* context) const noexcept { proj_context_destroy(context); }
};
using ProjContextPtr = std::unique_ptr<PJ_CONTEXT, ProjContextDeleter>;

struct ProjDeleter {
    void operator()(PJ* object) const noexcept { proj_destroy(object); }
};
using ProjPtr = std::unique_ptr<PJ, ProjDeleter>;

// A new context that keeps PROJ's messages to itself (failures are reported by the caller).
ProjContextPtr NewQuietProjContext();

}  // namespace zdsg
