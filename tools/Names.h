#pragma once
// Readable names for the library's codes, and the text forms of values shared by both reports.

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

#include <zorvodsg/json/ValidUtf8.h>
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

// FILETIME ticks (100 ns since 1601-01-01 UTC) -> "2021-06-01T00:00:00Z" (milliseconds when present);
// "FILETIME <ticks>" past the year 9999.
std::string FileTimeToIso8601(uint64_t ticks);
// The same text into `out` (kIso8601Capacity bytes, not terminated); its length, 0 past the year 9999.
inline constexpr size_t kIso8601Capacity = 32;
size_t FileTimeToIso8601(uint64_t ticks, char* out);

// A finite number into `out` (kNumberCapacity bytes, not terminated), returning its length: the
// shortest digits that read back as the same value of its type, plainly written for magnitudes from
// 1e-5 to below 1e15 (500000, not 5e+05), with an exponent outside them.
inline constexpr size_t kNumberCapacity = 64;
size_t FormatNumber(double value, char* out);
size_t FormatNumber(float value, char* out);

// The same as text; "NaN", "Infinity", "-Infinity" for what is not finite.
std::string NumberText(double value);
std::string NumberText(float value);

// A value as text: numbers plainly, text quoted, arrays in brackets, the empty value as "-".
std::string ValueText(const ZorvoDSG::System::NcVariant& value);

// Text made safe to print: invalid UTF-8 replaced, control characters escaped.
std::string Printable(const std::string& text);
// Text made valid UTF-8 (invalid sequences become U+FFFD): the library's one helper.
using ZorvoDSG::ValidUtf8;

// The text of the exception being handled; call only inside a catch block. A library Exception reads
// as a sentence: the text of its code, then its detail and its file when they are not empty; the file
// is left out when it is `reportedPath`, which the caller shows already.
std::string CurrentExceptionText(const std::filesystem::path& reportedPath = {});

}  // namespace zdsg
