#pragma once
// Owning handles for PROJ objects.

#include <memory>

#include <proj.h>
#include <proj_experimental.h>

namespace ZorvoDSG::Host::gk_detail {

struct PjDeleter {
    void operator()(PJ* p) const noexcept { proj_destroy(p); }
};
using PjPtr = std::unique_ptr<PJ, PjDeleter>;

struct PjListDeleter {
    void operator()(PJ_OBJ_LIST* p) const noexcept { proj_list_destroy(p); }
};
using PjListPtr = std::unique_ptr<PJ_OBJ_LIST, PjListDeleter>;

struct PjStringListDeleter {
    void operator()(char** p) const noexcept { proj_string_list_destroy(p); }
};
using PjStringListPtr = std::unique_ptr<char*, PjStringListDeleter>;

}  // namespace ZorvoDSG::Host::gk_detail
