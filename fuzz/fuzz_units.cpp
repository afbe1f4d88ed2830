// libFuzzer: a units or time-units text through the parsers.
#include <cstddef>
#include <cstdint>

#include "FuzzTargets.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    zdsg_fuzz::InitOnce(ZDSG_UDUNITS2_XML);
    zdsg_fuzz::FuzzUnits(data, size);
    return 0;
}
