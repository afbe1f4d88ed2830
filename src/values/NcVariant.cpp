#include <zorvodsg/values/NcVariant.h>

#include <charconv>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <ostream>
#include <stdexcept>
#include <type_traits>

#include <zorvodsg/values/Exception.h>
#include <zorvodsg/values/NcTypeDispatch.h>

namespace ZorvoDSG::System {

namespace {

[[noreturn]] void ThrowInternal(const wchar_t* detail) { throw Exception(eInternalError, detail, {}); }

// std::stod's rules (leading blanks skipped, an optional sign, decimal or 0x hexadecimal digits,
// inf and nan, the longest valid prefix taken) with the texts callers expect, but always with a
// decimal point: strtod would follow the host's locale and read "2.5" as 2 under a comma locale.
double ParseDouble(const std::string& text) {
    const char* p = text.data();
    const char* const end = p + text.size();
    while (p != end && (*p == ' ' || (*p >= '\t' && *p <= '\r'))) {
        ++p;
    }
    bool bNegative = false;
    if (p != end && (*p == '+' || *p == '-')) {
        bNegative = *p == '-';
        ++p;
    }
    double value = 0.0;
    std::from_chars_result result{p, std::errc::invalid_argument};
    if (p != end && *p != '+' && *p != '-') {  // from_chars itself would take a second minus sign
        if (end - p > 2 && p[0] == '0' && (p[1] == 'x' || p[1] == 'X')) {
            result = std::from_chars(p + 2, end, value, std::chars_format::hex);
        }
        if (result.ec == std::errc::invalid_argument) {  // not hexadecimal after all: "0x" reads as 0
            result = std::from_chars(p, end, value, std::chars_format::general);
        }
    }
    if (result.ec == std::errc::invalid_argument) {
        throw std::invalid_argument("invalid stod argument");
    }
    if (result.ec == std::errc::result_out_of_range) {
        throw std::out_of_range("stod argument out of range");
    }
    return bNegative ? -value : value;
}

// Truncation toward zero through a 64-bit integer; values outside its range (and NaN) take the
// pattern x86 produces for them, the smallest int64.
int64_t TruncateToInt64(double value) {
    constexpr double kTwo63 = 9223372036854775808.0;
    if (!(value > -kTwo63 - 1025.0 && value < kTwo63)) {  // -2^63 itself is representable
        return std::numeric_limits<int64_t>::min();
    }
    return static_cast<int64_t>(value);
}

int32_t TruncateToInt32(double value) {
    if (!(value > -2147483649.0 && value < 2147483648.0)) {
        return std::numeric_limits<int32_t>::min();
    }
    return static_cast<int32_t>(value);
}

template <typename T>
T FromDouble(double value) {
    if constexpr (std::is_floating_point_v<T>) {
        return static_cast<T>(value);
    } else if constexpr (std::is_same_v<T, uint64_t>) {
        constexpr double kTwo63 = 9223372036854775808.0;
        if (value >= kTwo63) {
            return static_cast<uint64_t>(TruncateToInt64(value - kTwo63)) + (uint64_t{1} << 63);
        }
        return static_cast<uint64_t>(TruncateToInt64(value));
    } else if constexpr (std::is_signed_v<T> && sizeof(T) <= sizeof(int32_t)) {
        return static_cast<T>(TruncateToInt32(value));  // narrowing wraps modulo the width
    } else {
        return static_cast<T>(TruncateToInt64(value));
    }
}

bool ArraysEqual(const NcVariantArray& a, const NcVariantArray& b) {
    if (a.ElementType() != b.ElementType() || a.Size() != b.Size()) {
        return false;
    }
    const bool bReadable = VisitNcType(
        a.ElementType(), []<typename T>(NcTypeTag<T>) { return true; }, [] { return false; });
    if (!bReadable) {
        return true;  // no element can be read; type and size are all there is
    }
    for (size_t i = 0; i < a.Size(); ++i) {
        const NcVariant x = a[i];
        const NcVariant y = b[i];
        if (x.index() != y.index() || !(x == y)) {
            return false;
        }
    }
    return true;
}

}  // namespace

double s_ToDouble(const NcVariant& value) {
    switch (value.index()) {
        case eNcUByte:
            return std::get<eNcUByte>(value);
        case eNcByte:
            return std::get<eNcByte>(value);
        case eNcShort:
            return std::get<eNcShort>(value);
        case eNcInt:
            return std::get<eNcInt>(value);
        case eNcUInt:
            return std::get<eNcUInt>(value);
        case eNcInt64:
            return static_cast<double>(std::get<eNcInt64>(value));
        case eNcUInt64:
            return static_cast<double>(std::get<eNcUInt64>(value));
        case eNcFloat:
            return std::get<eNcFloat>(value);
        case eNcDouble:
            return std::get<eNcDouble>(value);
        case eNcString:
            return ParseDouble(std::get<eNcString>(value));
        default:
            throw std::runtime_error("s_ToDouble(NcVariant) failed");
    }
}

bool s_bEmpty(const NcVariant& value) { return value.index() == eNcEmpty; }

void s_ChangeType(NcVariant& value, int ncType) {
    const double number = s_ToDouble(value);
    value = VisitNcType(
        ncType,
        [number]<typename T>(NcTypeTag<T>) -> NcVariant {
            if constexpr (!kIsNcNumeric<T>) {
                throw "s_ChangeType failed";
            } else {
                return NcVariant(std::in_place_type<T>, FromDouble<T>(number));
            }
        },
        []() -> NcVariant { throw "s_ChangeType failed"; });
}

bool operator==(const NcVariant& a, const NcVariant& b) {
    if (a.index() != b.index()) {
        ThrowInternal(L"invalid NcVariant comparison");
    }
    switch (a.index()) {
        case eNcEmpty:
            return true;
        case eNcUByte:
            return std::get<eNcUByte>(a) == std::get<eNcUByte>(b);
        case eNcByte:
            return std::get<eNcByte>(a) == std::get<eNcByte>(b);
        case eNcShort:
            return std::get<eNcShort>(a) == std::get<eNcShort>(b);
        case eNcInt:
            return std::get<eNcInt>(a) == std::get<eNcInt>(b);
        case eNcUInt:
            return std::get<eNcUInt>(a) == std::get<eNcUInt>(b);
        case eNcInt64:
            return std::get<eNcInt64>(a) == std::get<eNcInt64>(b);
        case eNcUInt64:
            return std::get<eNcUInt64>(a) == std::get<eNcUInt64>(b);
        case eNcFloat:
            return std::get<eNcFloat>(a) == std::get<eNcFloat>(b);
        case eNcDouble:
            return std::get<eNcDouble>(a) == std::get<eNcDouble>(b);
        case eNcString:
            return std::get<eNcString>(a) == std::get<eNcString>(b);
        case eNcArray:
            return ArraysEqual(std::get<eNcArray>(a), std::get<eNcArray>(b));
        default:
            ThrowInternal(L"cannot compare types");
    }
}

bool operator!=(const NcVariant& a, const NcVariant& b) { return !(a == b); }

std::ostream& operator<<(std::ostream& stream, const NcVariant& value) {
    switch (value.index()) {
        case eNcEmpty:
            return stream << "empty variant";
        case eNcUByte:
            return stream << std::get<eNcUByte>(value);
        case eNcByte:
            return stream << std::get<eNcByte>(value);
        case eNcShort:
            return stream << std::get<eNcShort>(value);
        case eNcInt:
            return stream << std::get<eNcInt>(value);
        case eNcUInt:
            return stream << std::get<eNcUInt>(value);
        case eNcInt64:
            return stream << std::get<eNcInt64>(value);
        case eNcUInt64:
            return stream << std::get<eNcUInt64>(value);
        case eNcFloat:
            return stream << std::get<eNcFloat>(value);
        case eNcDouble:
            return stream << std::get<eNcDouble>(value);
        case eNcString:
            return stream << std::get<eNcString>(value);
        case eNcArray: {
            const auto& array = std::get<eNcArray>(value);
            stream << '{';
            for (size_t i = 0; i < array.Size(); ++i) {
                if (i > 0) {
                    stream << ", ";
                }
                stream << array[i];
            }
            return stream << '}';
        }
        default:
            throw std::runtime_error("unrecognized variant index");
    }
}

}  // namespace ZorvoDSG::System
