#pragma once
// Owning holder for gk objects.

#include <memory>

#include <zorvodsg/host/gk/Gk.h>

namespace ZorvoDSG::Host {

struct GkObjectDeleter {
    void operator()(gk_object* object) const noexcept { gk_object_del(object); }
};

using GkObjectPtr = std::unique_ptr<gk_object, GkObjectDeleter>;

// Borrowed parts (gk_geogcs_datum, ...) must be cloned before they outlive their parent.
inline GkObjectPtr GkCloneOf(gk_object const* borrowed) {
    return GkObjectPtr(gk_object_clone(borrowed));
}

}  // namespace ZorvoDSG::Host
