#include <zorvodsg/values/NcLock.h>

#include <dlfcn.h>

#include <cstdint>

namespace ZorvoDSG::System {

namespace {

// netCDF-4 files are read through HDF5, which prints its error stack to stderr unless told otherwise.
// netCDF-C turns that off once, on the thread that initialises it, and HDF5 keeps the setting per
// thread: without this every other thread would print a diagnostic for each attribute netCDF-C
// merely probes for. HDF5 is reached through netCDF-C's own dependency, so it is looked up rather
// than linked; without it there is nothing to silence.
void SilenceHdf5OnThisThread() noexcept {
    thread_local bool t_bDone = false;
    if (t_bDone) {
        return;
    }
    t_bDone = true;
    using SetAuto = int (*)(std::int64_t estackId, void* func, void* clientData);  // H5Eset_auto2
    static const auto s_setAuto = reinterpret_cast<SetAuto>(dlsym(RTLD_DEFAULT, "H5Eset_auto2"));
    if (s_setAuto != nullptr) {
        constexpr std::int64_t kDefaultStack = 0;  // H5E_DEFAULT
        s_setAuto(kDefaultStack, nullptr, nullptr);
    }
}

}  // namespace

std::recursive_mutex& NcLock::s_Mutex() {
    // Never destroyed: a file held by a static object may close after the other statics are gone.
    static auto* const mutex = new std::recursive_mutex;
    return *mutex;
}

void NcLock::s_PrepareThread() noexcept { SilenceHdf5OnThisThread(); }

}  // namespace ZorvoDSG::System
