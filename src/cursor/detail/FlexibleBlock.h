#pragma once
// Allocation of a structure followed by a run of elements in the same block.

#include <cstddef>
#include <new>

namespace ZorvoDSG::SpaceTime::detail {

// Bytes for a structure of `size` bytes plus `capacity` elements of `elementBytes`; a negative
// capacity counts as none, and a count no allocator could satisfy fails as exhausted memory.
inline void* AllocateFlexible(std::size_t size, long capacity, std::size_t elementBytes) {
    constexpr std::size_t kMaxBytes = std::size_t{1} << 40;
    const std::size_t elements = capacity > 0 ? static_cast<std::size_t>(capacity) : 0;
    if (elements > (kMaxBytes - size) / elementBytes) {
        throw std::bad_alloc();
    }
    return ::operator new(size + elements * elementBytes);
}

}  // namespace ZorvoDSG::SpaceTime::detail
