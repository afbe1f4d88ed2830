#include <zorvodsg/spacetime/VerticalUnits.h>

#include <stdexcept>

#include <zorvodsg/host/Utf8.h>
#include <zorvodsg/spacetime/UnitSystem.h>
#include <zorvodsg/spacetime/detail/UDUnits.h>
#include <zorvodsg/values/Exception.h>

using ZorvoDSG::Host::Utf8ToWide;

namespace ZorvoDSG::SpaceTime {

namespace {

// The detail of a failed conversion: the unit's UTF-8 symbols followed by `suffix`.
Exception ConversionFailure(const Unit& u, const char* suffix) {
    std::string symbols;
    detail::FormatUnit(detail::Raw(u), UT_UTF8, symbols);
    return Exception(eBadUnitConversion, Utf8ToWide(symbols + suffix), {});
}

}  // namespace

bool bPressureUnits(const std::string& zUnits) { return IsPressureUnit(ParseUnit(zUnits)); }

double _1Pascal(const std::string& zUnits) {
    const Unit u = ParseUnit(zUnits);
    if (!IsPressureUnit(u)) {
        throw std::runtime_error("not pressure units");
    }
    std::lock_guard lock(detail::UnitMutex());
    const Unit pascal = detail::UnitByName("pascal");
    if (!pascal) {
        throw Exception(eInternalError, L"cannot get base pressure unit", {});
    }
    const detail::ConverterPtr converter(ut_get_converter(detail::Raw(pascal), detail::Raw(u)));
    if (!converter) {
        throw ConversionFailure(u, " to pascals");
    }
    return cv_convert_double(converter.get(), 1.0);
}

std::pair<std::string, double> ZUnits(const std::string& zUnits) {
    const Unit u = ParseUnit(zUnits);
    std::lock_guard lock(detail::UnitMutex());
    std::string name;
    if (!u || !detail::FormatUnit(detail::Raw(u), UT_NAMES, name)) {
        throw Exception(eInternalError, L"cannot get long name of unit", {});
    }
    if (!name.empty() && name[0] >= 'a' && name[0] <= 'z') {
        name[0] = static_cast<char>(name[0] - 'a' + 'A');
    }
    const Unit meter = detail::UnitByName("meter");
    if (!meter) {
        throw Exception(eInternalError, L"cannot get base length unit", {});
    }
    const detail::ConverterPtr converter(ut_get_converter(detail::Raw(u), detail::Raw(meter)));
    if (!converter) {
        throw ConversionFailure(u, " to meters");
    }
    return {name, cv_convert_double(converter.get(), 1.0)};
}

}  // namespace ZorvoDSG::SpaceTime
