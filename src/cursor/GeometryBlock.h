#pragma once
// Owns a variable-length geometry block (WKSProfile, WKSTrajectory) with the capacity it was made
// for. Copies get a block of their own of the same capacity, so two features never share one.

#include <memory>

namespace ZorvoDSG::detail {

template <class Geometry>
class GeometryBlock {
public:
    explicit GeometryBlock(long capacity) : m_capacity(capacity > 0 ? capacity : 0), m_block(New(m_capacity)) {}
    GeometryBlock(const GeometryBlock& other)
        : m_capacity(other.m_capacity), m_block(new (m_capacity) Geometry(*other.m_block)) {}
    GeometryBlock& operator=(const GeometryBlock& other) {
        if (this != &other) {
            std::unique_ptr<Geometry> block(new (other.m_capacity) Geometry(*other.m_block));
            m_block = std::move(block);
            m_capacity = other.m_capacity;
        }
        return *this;
    }

    // Grows to `n` with a fresh, empty block (the contents are not kept); nothing when it suffices.
    void Reserve(long n) {
        if (n > m_capacity) {
            m_block = New(n);
            m_capacity = n;
        }
    }
    long Capacity() const { return m_capacity; }
    Geometry& operator*() { return *m_block; }
    const Geometry& operator*() const { return *m_block; }
    Geometry* operator->() { return m_block.get(); }
    const Geometry* operator->() const { return m_block.get(); }

private:
    static std::unique_ptr<Geometry> New(long capacity) { return std::unique_ptr<Geometry>(new (capacity) Geometry()); }

    long m_capacity;
    std::unique_ptr<Geometry> m_block;
};

}  // namespace ZorvoDSG::detail
