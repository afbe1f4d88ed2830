#pragma once
// The tagged value that carries every attribute and data value read from a netCDF file.
//
// The alternative index is part of the contract (callers switch on it):
//   0 empty (no value, missing)   1 NC_UBYTE   2 NC_BYTE   3 NC_SHORT   4 NC_INT (32-bit)
//   5 NC_UINT   6 NC_INT64   7 NC_UINT64   8 NC_FLOAT   9 NC_DOUBLE   10 text (NC_CHAR, NC_STRING)
//   11 NcVariantArray (NcVariant only)
// Text is a byte string, never re-encoded. There is no alternative for NC_USHORT.

#include <cstdint>
#include <iosfwd>
#include <string>
#include <variant>

namespace ZorvoDSG::System {

class NcVariantArray;

using NcScalar = std::variant<std::monostate, unsigned char, signed char, short, int32_t, uint32_t, int64_t,
                              uint64_t, float, double, std::string>;

using NcVariant = std::variant<std::monostate, unsigned char, signed char, short, int32_t, uint32_t, int64_t,
                               uint64_t, float, double, std::string, NcVariantArray>;

// Alternative indexes, named.
enum eNcVariantIndex : size_t {
    eNcEmpty = 0,
    eNcUByte = 1,
    eNcByte = 2,
    eNcShort = 3,
    eNcInt = 4,
    eNcUInt = 5,
    eNcInt64 = 6,
    eNcUInt64 = 7,
    eNcFloat = 8,
    eNcDouble = 9,
    eNcString = 10,
    eNcArray = 11,
};

// The numeric value; text is parsed as std::stod does. Empty values and arrays fail with
// std::runtime_error "s_ToDouble(NcVariant) failed".
double s_ToDouble(const NcVariant& value);
// True exactly for the empty alternative.
bool s_bEmpty(const NcVariant& value);
// Converts the value in place to the alternative of a netCDF type code (1, 3..7, 9..11); any other
// code throws the text "s_ChangeType failed" (as a const char*).
void s_ChangeType(NcVariant& value, int ncType);

// Compares values of the same alternative; different alternatives fail with Exception eInternalError.
bool operator==(const NcVariant& a, const NcVariant& b);
bool operator!=(const NcVariant& a, const NcVariant& b);
std::ostream& operator<<(std::ostream& stream, const NcVariant& value);

}  // namespace ZorvoDSG::System

#include <zorvodsg/values/NcVariantArray.h>
