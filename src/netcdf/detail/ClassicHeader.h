#pragma once
// A check of a classic (CDF-1, CDF-2, CDF-5) header before netCDF-C reads it. netCDF-C allocates what
// the header's counts declare (dimensions, attributes, variables, a variable's dimensions) before it
// finds out whether the file holds them, so a header of a few bytes can ask for gigabytes, and it copies
// names into buffers of NC_MAX_NAME + 1 characters whatever their declared length. Here every count is
// held against the bytes left in the file, which the items it counts must occupy, and every name
// against NC_MAX_NAME.

#include <filesystem>

namespace ZorvoNetCDFDSG::detail {

// Returns when the file does not start like a classic file (another format, or too short to tell) or
// when its header's counts fit in the file; throws Exception NC_ENOTNC with what does not fit
// otherwise. Reads only the header.
void CheckClassicHeader(const std::filesystem::path& path);

}  // namespace ZorvoNetCDFDSG::detail
