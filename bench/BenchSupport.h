#pragma once
// What the benchmark programs share: netCDF status checks, the unit database, and the memory
// figures of the running process.

#include <cstdint>

namespace zdsg_bench {

// Throws std::runtime_error with the library's text for a failed netCDF status.
void CheckNc(int status);

// Loads the UDUNITS-2 database from $ZDSG_UDUNITS2_XML, else Debian's, so that coordinates are
// classified as in use.
void InitUnits();

// CPU seconds of this process, user and system: unlike elapsed time, not raised by other programs
// sharing the machine.
double ProcessCpuSeconds();

// A "kB" line of /proc/self/status (VmRSS, VmHWM, ...) in KiB; 0 when it cannot be read.
uint64_t ProcStatusKiB(const char* key);

}  // namespace zdsg_bench
