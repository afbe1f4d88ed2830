#include <zorvodsg/values/ResourceLimits.h>

#include <zorvodsg/host/Utf8.h>
#include <zorvodsg/values/Exception.h>

namespace ZorvoDSG::System {

void ThrowLimitExceeded(const std::string& what, const std::string& value, uint64_t limit,
                        const std::filesystem::path& path) {
    throw Exception(eNotDSGConformant,
                    Host::Utf8ToWide(what + " " + value + " exceeds the limit of " + std::to_string(limit)), path);
}

}  // namespace ZorvoDSG::System
