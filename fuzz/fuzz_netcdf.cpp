// libFuzzer: a netCDF file image read as a host reads a file.
#include <cstddef>
#include <cstdint>

#include "FuzzTargets.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    zdsg_fuzz::InitOnce(ZDSG_UDUNITS2_XML);
    zdsg_fuzz::FuzzNetCDFImage(data, size);
    return 0;
}
