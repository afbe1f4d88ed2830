#include <zorvodsg/values/Size.h>

#include <zorvodsg/values/Exception.h>

namespace ZorvoDSG::System {

namespace {
[[noreturn]] void ThrowOverflow() { throw Exception(eInternalError, L"size overflow", {}); }
}  // namespace

std::size_t CheckedMultiply(std::size_t a, std::size_t b) {
    std::size_t result = 0;
    if (!TryMultiply(a, b, result)) {
        ThrowOverflow();
    }
    return result;
}

std::size_t CheckedAdd(std::size_t a, std::size_t b) {
    std::size_t result = 0;
    if (__builtin_add_overflow(a, b, &result)) {
        ThrowOverflow();
    }
    return result;
}

}  // namespace ZorvoDSG::System
