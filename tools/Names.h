#pragma once
// Readable names for the library's codes, and the text forms of values shared by both reports.

#include <cstdint>
#include <string>

#include <zorvodsg/spacetime/CoordinateRoles.h>
#include <zorvodsg/spacetime/eTimeUnit.h>
#include <zorvodsg/values/NcVariant.h>

namespace zdsg {

// netCDF type code -> "byte", "char", ... "string"; 0 (no data in the file) -> "none".
std::string TypeName(int ncType);
// netCDF-C format code (NC_FORMAT_*) -> "classic", "64-bit offset", "CDF5", "netCDF-4", ...
std::string FormatName(int ncFormat);
// Log message code -> what it reports.
std::string MessageName(long code);
std::string TimeUnitName(ZorvoDSG::SpaceTime::eTimeUnit unit);
std::string VerticalDatumModelName(ZorvoDSG::SpaceTime::eVerticalDatumModel model);

// FILETIME ticks (100 ns since 1601-01-01 UTC) -> "2021-06-01T00:00:00Z" (milliseconds when present).
std::string FileTimeToIso8601(uint64_t ticks);

// Shortest text that reads back as the same number; "NaN", "Infinity", "-Infinity" otherwise.
std::string NumberText(double value);
std::string NumberText(float value);

// A value as text: numbers plainly, text quoted, arrays in brackets, the empty value as "-".
std::string ValueText(const ZorvoDSG::System::NcVariant& value);

// Text made safe to print: invalid UTF-8 replaced, control characters escaped.
std::string Printable(const std::string& text);

// The text of the exception being handled; call only inside a catch block.
std::string CurrentExceptionText();

}  // namespace zdsg
