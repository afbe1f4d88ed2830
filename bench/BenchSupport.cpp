#include "BenchSupport.h"

#include <netcdf.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>

#include <time.h>

#include <zorvodsg/spacetime/UnitSystem.h>

namespace zdsg_bench {

void CheckNc(int status) {
    if (status != NC_NOERR) {
        throw std::runtime_error(nc_strerror(status));
    }
}

void InitUnits() {
    if (const char* units = std::getenv("ZDSG_UDUNITS2_XML")) {
        ZorvoDSG::s_InitUDUnits2(units);
    } else if (std::filesystem::exists("/usr/share/xml/udunits/udunits2.xml")) {
        ZorvoDSG::s_InitUDUnits2("/usr/share/xml/udunits/udunits2.xml");
    }
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

}  // namespace zdsg_bench
