#pragma once
// What the benchmark programs share: netCDF status checks and file writing, the unit database,
// opening a generated file's class, and the memory figures of the running process.

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>

#include <zorvodsg/featureclass/BasicFeatureClass.h>

namespace zdsg_bench {

// Throws std::runtime_error with the library's text for a failed netCDF status.
void CheckNc(int status);

// A text attribute of a variable (or NC_GLOBAL).
void PutText(int ncid, int varid, const char* name, const std::string& value);

// A file being written with netCDF-C, closed whatever happens; Close() reports the status of the
// final flush.
class NcWrittenFile {
public:
    NcWrittenFile(const std::filesystem::path& path, int mode);
    NcWrittenFile(const NcWrittenFile&) = delete;
    NcWrittenFile& operator=(const NcWrittenFile&) = delete;
    ~NcWrittenFile();
    int Id() const { return m_ncid; }
    void Close();

private:
    int m_ncid = -1;
};

// A file of the system's temporary directory named for this process, removed when the object goes.
class TemporaryFile {
public:
    // The path "<tmp>/zdsg_bench_<name>_<pid>.nc", written by `write`.
    TemporaryFile(const std::string& name, const std::function<void(const std::filesystem::path&)>& write);
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile();
    const std::filesystem::path& Path() const { return m_path; }

private:
    std::filesystem::path m_path;
};

// Loads the UDUNITS-2 database from $ZDSG_UDUNITS2_XML, else Debian's, so that coordinates are
// classified as in use.
void InitUnits();

// The last dataset of a file (its only one, for the generated files) as a feature class without a
// workspace, as a program that wants the features of one file opens it.
std::shared_ptr<ZorvoDSG::BasicFeatureClass> OpenFeatureClass(const std::filesystem::path& path);

// CPU seconds of this process, user and system: unlike elapsed time, not raised by other programs
// sharing the machine.
double ProcessCpuSeconds();

// A "kB" line of /proc/self/status (VmRSS, VmHWM, ...) in KiB; 0 when it cannot be read.
uint64_t ProcStatusKiB(const char* key);

// The body of a fresh process that measures memory: opens the file's class, runs `scan` (which
// returns the features read) and prints "openKiB peakKiB features seconds". 0, or 1 with the failure
// on stderr, `what` naming the scan.
int RunScanChild(const char* what, const char* path, const std::function<uint64_t(ZorvoDSG::IFeatureClass&)>& scan);

}  // namespace zdsg_bench
