#pragma once
// Reading one netCDF attribute into the value the metadata model stores for it.

#include <filesystem>
#include <string>

#include <zorvodsg/values/NcVariant.h>

namespace ZorvoNetCDFDSG::detail {

// Attribute `name` of variable `varId` (NC_GLOBAL: the group's) in group `groupId`: numeric types of
// length 1 as their scalar, other lengths as an NcVariantArray; NC_CHAR as text cut at the first zero
// byte; NC_STRING as every value followed by a line feed. netCDF failures and lengths that cannot be
// held raise Exception (status, "attribute <owner>:<name>", path); NC_USHORT and unknown types raise
// std::runtime_error "unimplemented attribute value type".
ZorvoDSG::System::NcVariant ReadNcAttribute(int groupId, int varId, const char* name, const std::string& owner,
                                            const std::filesystem::path& path);

}  // namespace ZorvoNetCDFDSG::detail
