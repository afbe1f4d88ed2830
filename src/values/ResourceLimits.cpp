#include <zorvodsg/values/ResourceLimits.h>

#include <zorvodsg/host/Utf8.h>
#include <zorvodsg/values/Exception.h>

namespace ZorvoDSG::System {

void CheckResourceLimit(uint64_t value, uint64_t limit, const std::string& what, const std::filesystem::path& path) {
    if (value > limit) {
        throw Exception(eNotDSGConformant,
                        Host::Utf8ToWide(what + " " + std::to_string(value) + " exceeds the limit of " +
                                         std::to_string(limit)),
                        path);
    }
}

uint64_t LimitedProduct(uint64_t a, uint64_t b, uint64_t limit, const std::string& what,
                        const std::filesystem::path& path) {
    if (b != 0 && a > limit / b) {
        throw Exception(eNotDSGConformant,
                        Host::Utf8ToWide(what + " " + std::to_string(a) + " x " + std::to_string(b) +
                                         " exceeds the limit of " + std::to_string(limit)),
                        path);
    }
    return a * b;
}

}  // namespace ZorvoDSG::System
