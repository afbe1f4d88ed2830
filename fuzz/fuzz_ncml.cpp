// libFuzzer: an NcML document applied to a fixed point file, which is then read to the end.
#include <cstddef>
#include <cstdint>

#include "FuzzTargets.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    zdsg_fuzz::InitOnce(ZDSG_UDUNITS2_XML);
    zdsg_fuzz::FuzzNcML(data, size, ZDSG_FUZZ_NCML_FILE);
    return 0;
}
