#include "ProjHandles.h"

#include <new>

namespace zdsg {

ProjContextPtr NewQuietProjContext() {
    ProjContextPtr context(proj_context_create());
    if (!context) {
        throw std::bad_alloc();
    }
    proj_log_func(context.get(), nullptr, [](void*, int, const char*) {});
    return context;
}

}  // namespace zdsg
