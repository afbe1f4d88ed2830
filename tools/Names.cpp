#include "Names.h"

#include <netcdf.h>

#include <charconv>
#include <chrono>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <exception>
#include <variant>

#include <zorvodsg/host/Utf8.h>
#include <zorvodsg/values/Exception.h>

using ZorvoDSG::Host::Utf8ToWide;
using ZorvoDSG::Host::WideToUtf8;

namespace zdsg {

std::string TypeName(int ncType) {
    switch (ncType) {
        case 0: return "none";
        case NC_BYTE: return "byte";
        case NC_CHAR: return "char";
        case NC_SHORT: return "short";
        case NC_INT: return "int";
        case NC_FLOAT: return "float";
        case NC_DOUBLE: return "double";
        case NC_UBYTE: return "ubyte";
        case NC_USHORT: return "ushort";
        case NC_UINT: return "uint";
        case NC_INT64: return "int64";
        case NC_UINT64: return "uint64";
        case NC_STRING: return "string";
        default: return "type " + std::to_string(ncType);
    }
}

std::string FormatName(int ncFormat) {
    switch (ncFormat) {
        case NC_FORMAT_CLASSIC: return "classic";
        case NC_FORMAT_64BIT_OFFSET: return "64-bit offset";
        case NC_FORMAT_CDF5: return "CDF5";
        case NC_FORMAT_NETCDF4: return "netCDF-4";
        case NC_FORMAT_NETCDF4_CLASSIC: return "netCDF-4 classic model";
        default: return "format " + std::to_string(ncFormat);
    }
}

std::string MessageName(long code) {
    switch (code) {
        case 11: return "unparseable units";
        case 13: return "NcML added variable attribute";
        case 14: return "NcML added global attribute";
        case 15: return "NcML created variable";
        case 16: return "NcML renamed variable";
        case 17: return "assumed geographic grid mapping";
        default: return "message";
    }
}

std::string TimeUnitName(ZorvoDSG::SpaceTime::eTimeUnit unit) {
    using namespace ZorvoDSG::SpaceTime;
    switch (unit) {
        case eTimeNone: return "none";
        case eTimeYear: return "years";
        case eTimeCommonYear: return "common years";
        case eTimeLeapYear: return "leap years";
        case eTimeJulianYear: return "julian years";
        case eTimeGregorianYear: return "gregorian years";
        case eTimeMonth: return "months";
        case eTimeDay: return "days";
        case eTimeHour: return "hours";
        case eTimeMinute: return "minutes";
        case eTimeSecond: return "seconds";
    }
    return "time unit " + std::to_string(static_cast<int>(unit));
}

std::string VerticalDatumModelName(ZorvoDSG::SpaceTime::eVerticalDatumModel model) {
    using namespace ZorvoDSG::SpaceTime;
    switch (model) {
        case eVerticalDatumUnspecified: return "unspecified";
        case eVerticalDatumEllipsoid: return "ellipsoid";
        case eVerticalDatumGeoid: return "geoid";
        case eVerticalDatumLowestAstronomicalTide: return "lowest astronomical tide";
        case eVerticalDatumMeanHigherHighWater: return "mean higher high water";
        case eVerticalDatumMeanLowerLowWater: return "mean lower low water";
        case eVerticalDatumMeanLowWaterSprings: return "mean low water springs";
        case eVerticalDatumMeanSeaLevel: return "mean sea level";
    }
    return "datum model " + std::to_string(static_cast<int>(model));
}

namespace {

void Digits(char* out, unsigned value, int width) {
    for (int i = width - 1; i >= 0; --i) {
        out[i] = static_cast<char>('0' + value % 10);
        value /= 10;
    }
}

}  // namespace

size_t FileTimeToIso8601(uint64_t ticks, char* out) {
    using namespace std::chrono;
    constexpr uint64_t kTicksPerSecond = 10'000'000;
    // Years past 9999 do not fit ISO 8601's basic form; FILETIME arithmetic wraps there anyway.
    constexpr uint64_t kMaxSeconds = 265'046'774'400ULL;  // 1601-01-01 .. 9999-12-31
    const uint64_t totalSeconds = ticks / kTicksPerSecond;
    if (totalSeconds >= kMaxSeconds) {
        return 0;
    }
    // Written digit by digit: a features run formats one time per feature.
    const sys_days epoch = sys_days{year{1601} / January / 1};
    const auto day = epoch + days{static_cast<int64_t>(totalSeconds / 86400)};
    const year_month_day date{day};
    const auto secondOfDay = static_cast<unsigned>(totalSeconds % 86400);
    const auto millis = static_cast<unsigned>((ticks % kTicksPerSecond) / 10'000);
    Digits(out, static_cast<unsigned>(static_cast<int>(date.year())), 4);
    out[4] = '-';
    Digits(out + 5, static_cast<unsigned>(date.month()), 2);
    out[7] = '-';
    Digits(out + 8, static_cast<unsigned>(date.day()), 2);
    out[10] = 'T';
    Digits(out + 11, secondOfDay / 3600, 2);
    out[13] = ':';
    Digits(out + 14, secondOfDay / 60 % 60, 2);
    out[16] = ':';
    Digits(out + 17, secondOfDay % 60, 2);
    size_t length = 19;
    if (millis != 0) {
        out[length++] = '.';
        Digits(out + length, millis, 3);
        length += 3;
    }
    out[length++] = 'Z';
    return length;
}

std::string FileTimeToIso8601(uint64_t ticks) {
    char buffer[kIso8601Capacity];
    const size_t length = FileTimeToIso8601(ticks, buffer);
    return length != 0 ? std::string(buffer, length) : "FILETIME " + std::to_string(ticks);
}

namespace {

template <typename T>
size_t Format(T value, char* out) {
    const T magnitude = std::fabs(value);
    const bool bPlain = magnitude == 0 || (magnitude >= T(1e-5) && magnitude < T(1e15));
    const auto result = bPlain ? std::to_chars(out, out + kNumberCapacity, value, std::chars_format::fixed)
                               : std::to_chars(out, out + kNumberCapacity, value);
    return static_cast<size_t>(result.ptr - out);
}

template <typename T>
std::string ShortestText(T value) {
    if (std::isnan(value)) {
        return "NaN";
    }
    if (std::isinf(value)) {
        return value > 0 ? "Infinity" : "-Infinity";
    }
    char buffer[kNumberCapacity];
    return std::string(buffer, Format(value, buffer));
}

std::string QuotedText(const std::string& text) {
    std::string quoted = "\"";  // not "\"" + ...: gcc 12 warns (-Wrestrict) about that temporary
    quoted += Printable(text);
    quoted += '"';
    return quoted;
}

std::string ArrayText(const ZorvoDSG::System::NcVariantArray& values) {
    std::string out = "[";
    constexpr size_t kShown = 16;
    for (size_t i = 0; i < values.Size() && i < kShown; ++i) {
        if (i != 0) {
            out += ", ";
        }
        out += ValueText(values[i]);
    }
    if (values.Size() > kShown) {
        out += ", ... (" + std::to_string(values.Size()) + " values)";
    }
    return out + "]";
}

}  // namespace

size_t FormatNumber(double value, char* out) { return Format(value, out); }
size_t FormatNumber(float value, char* out) { return Format(value, out); }

std::string NumberText(double value) { return ShortestText(value); }
std::string NumberText(float value) { return ShortestText(value); }

std::string ValueText(const ZorvoDSG::System::NcVariant& value) {
    return std::visit(
        [](const auto& v) -> std::string {
            using T = std::decay_t<decltype(v)>;
            if constexpr (std::is_same_v<T, std::monostate>) {
                return "-";
            } else if constexpr (std::is_same_v<T, std::string>) {
                return QuotedText(v);
            } else if constexpr (std::is_same_v<T, ZorvoDSG::System::NcVariantArray>) {
                return ArrayText(v);
            } else if constexpr (std::is_floating_point_v<T>) {
                return ShortestText(v);
            } else {
                return std::to_string(static_cast<std::conditional_t<std::is_signed_v<T>, long long,
                                                                     unsigned long long>>(v));
            }
        },
        value);
}

std::string Printable(const std::string& text) {
    const std::wstring wide = Utf8ToWide(text);
    std::wstring safe;
    safe.reserve(wide.size());
    for (const wchar_t c : wide) {
        if (c < 0x20 || c == 0x7F || (c >= 0x80 && c < 0xA0)) {
            switch (c) {
                case L'\n': safe += L"\\n"; break;
                case L'\t': safe += L"\\t"; break;
                case L'\r': safe += L"\\r"; break;
                default: {
                    wchar_t escaped[8];
                    std::swprintf(escaped, 8, L"\\x%02X", static_cast<unsigned>(c));
                    safe += escaped;
                }
            }
        } else {
            safe += c;
        }
    }
    return WideToUtf8(safe);
}

std::string CurrentExceptionText(const std::filesystem::path& reportedPath) {
    try {
        throw;
    } catch (const ZorvoDSG::Exception& e) {
        // Not ToString(): its fixed "code: detail: path" leaves empty fields ("format: : a.nc").
        std::string text = WideToUtf8(ZorvoDSG::Exception::s_NcErrToWString(e.NcErr()).Str());
        if (!e.wsDetail().empty()) {
            text += ": " + WideToUtf8(e.wsDetail());
        }
        if (!e.NcPath().empty() && e.NcPath() != reportedPath) {
            text += " (" + e.NcPath().string() + ")";
        }
        return text;
    } catch (const std::bad_variant_access&) {
        // The library reads attributes that must be text (units, standard_name, ...) as text.
        return "an attribute that must be text holds another type";
    } catch (const std::exception& e) {
        return e.what();
    } catch (const char* text) {
        return text != nullptr ? text : "unknown error";
    } catch (...) {
        return "unknown error";
    }
}

}  // namespace zdsg
