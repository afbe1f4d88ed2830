#pragma once
// netCDF-C is not thread-safe: its open-file table, its dispatch layers and HDF5 beneath them are
// shared by the whole process. Every call the library makes into netCDF-C holds this one
// process-wide lock, so ZorvoDSG objects may be used on different threads at once. A host that calls
// netCDF-C itself while such objects are in use on other threads holds it too.

#include <mutex>

namespace ZorvoDSG::System {

// Holds the process-wide netCDF-C lock for its lifetime. Recursive: a function holding it may call
// another that takes it again.
class NcLock {
public:
    NcLock() : m_lock(s_Mutex()) { s_PrepareThread(); }
    NcLock(const NcLock&) = delete;
    NcLock& operator=(const NcLock&) = delete;

private:
    static std::recursive_mutex& s_Mutex();
    // Once per thread, with the lock held: what netCDF-C's libraries need set per thread.
    static void s_PrepareThread() noexcept;

    std::lock_guard<std::recursive_mutex> m_lock;
};

}  // namespace ZorvoDSG::System
