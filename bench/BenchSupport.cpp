#include "BenchSupport.h"

#include <netcdf.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <fstream>
#include <stdexcept>
#include <system_error>
#include <utility>

#include <time.h>

#include <zorvodsg/netcdf/NetCDFFile.h>
#include <zorvodsg/spacetime/UnitSystem.h>
#include <zorvodsg/values/NetCDFWorkspaceLog.h>

namespace zdsg_bench {

void CheckNc(int status) {
    if (status != NC_NOERR) {
        throw std::runtime_error(nc_strerror(status));
    }
}

void PutText(int ncid, int varid, const char* name, const std::string& value) {
    CheckNc(nc_put_att_text(ncid, varid, name, value.size(), value.c_str()));
}

NcWrittenFile::NcWrittenFile(const std::filesystem::path& path, int mode) {
    CheckNc(nc_create(path.c_str(), NC_CLOBBER | mode, &m_ncid));
}

NcWrittenFile::~NcWrittenFile() {
    if (m_ncid != -1) {
        nc_close(m_ncid);
    }
}

void NcWrittenFile::Close() { CheckNc(nc_close(std::exchange(m_ncid, -1))); }

TemporaryFile::TemporaryFile(const std::string& name, const std::function<void(const std::filesystem::path&)>& write)
    : m_path(std::filesystem::temp_directory_path() /
             ("zdsg_bench_" + name + "_" + std::to_string(::getpid()) + ".nc")) {
    write(m_path);
}

TemporaryFile::~TemporaryFile() {
    std::error_code ignored;
    std::filesystem::remove(m_path, ignored);
}

void InitUnits() {
    if (const char* units = std::getenv("ZDSG_UDUNITS2_XML")) {
        ZorvoDSG::s_InitUDUnits2(units);
    } else if (std::filesystem::exists("/usr/share/xml/udunits/udunits2.xml")) {
        ZorvoDSG::s_InitUDUnits2("/usr/share/xml/udunits/udunits2.xml");
    }
}

std::shared_ptr<ZorvoDSG::BasicFeatureClass> OpenFeatureClass(const std::filesystem::path& path) {
    ZorvoNetCDFDSG::NetCDFWorkspaceLog log;
    auto files = ZorvoNetCDFDSG::NetCDFFile::s_Open(path, 1, nullptr, log);
    if (files.empty()) {
        throw std::runtime_error("no dataset in " + path.string());
    }
    return ZorvoDSG::BasicFeatureClass::s_Open(files.back(), ZorvoDSG::eFeatureUnknown, nullptr);
}

double ProcessCpuSeconds() {
    timespec now{};
    ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

uint64_t ProcStatusKiB(const char* key) {
    std::ifstream status("/proc/self/status");
    const std::string prefix = std::string(key) + ":";
    std::string line;
    while (std::getline(status, line)) {
        if (line.compare(0, prefix.size(), prefix) == 0) {
            return std::strtoull(line.c_str() + prefix.size(), nullptr, 10);
        }
    }
    return 0;
}

int RunScanChild(const char* what, const char* path, const std::function<uint64_t(ZorvoDSG::IFeatureClass&)>& scan) {
    try {
        InitUnits();
        const auto start = std::chrono::steady_clock::now();
        const std::shared_ptr<ZorvoDSG::IFeatureClass> featureClass = OpenFeatureClass(path);
        const uint64_t openKiB = ProcStatusKiB("VmRSS");
        const uint64_t cFeatures = scan(*featureClass);
        const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - start;
        std::printf("%llu %llu %llu %.6f\n", static_cast<unsigned long long>(openKiB),
                    static_cast<unsigned long long>(ProcStatusKiB("VmHWM")),
                    static_cast<unsigned long long>(cFeatures), seconds.count());
        return 0;
    } catch (const std::exception& e) {
        std::fprintf(stderr, "%s of %s failed: %s\n", what, path, e.what());
        return 1;
    }
}

}  // namespace zdsg_bench
