#include <zorvodsg/spacetime/UnitSystem.h>

#include <atomic>

#include <zorvodsg/spacetime/detail/CNumericLocale.h>
#include <zorvodsg/spacetime/detail/UDUnits.h>
#include <zorvodsg/values/Exception.h>

namespace ZorvoDSG {

namespace {

std::atomic<ut_system*> s_pUnitSystem{nullptr};  // never freed: units may outlive any owner

// Serialises the loading; s_pUnitSystem being non-null is the "completed" state, so a failed load
// leaves the next caller free to try again.
std::mutex s_initMutex;

using SpaceTime::detail::CNumericLocale;

[[noreturn]] void ThrowInitFailure(const std::filesystem::path& path) {
    throw Exception(eInternalError, L"udunits initialization failure", path);
}

}  // namespace

void s_InitUDUnits2(std::filesystem::path path) {
    if (s_pUnitSystem.load(std::memory_order_acquire) != nullptr) {
        return;
    }
    std::lock_guard initLock(s_initMutex);
    if (s_pUnitSystem.load(std::memory_order_acquire) != nullptr) {
        return;
    }
    // Short (8.3) path names do not exist here: the path is used as given.
    const std::string utf8Path = path.string();

    ut_system* system = nullptr;
    ut_status status = UT_SUCCESS;
    {
        std::lock_guard unitLock(SpaceTime::detail::UnitMutex());
        ut_set_error_message_handler(ut_ignore);
        CNumericLocale cLocale;
        if (!cLocale.bActive()) {
            ThrowInitFailure(path);
        }
        system = ut_read_xml(utf8Path.c_str());
        status = ut_get_status();
        if (system != nullptr && status != UT_SUCCESS) {
            ut_free_system(system);
            system = nullptr;
        }
    }
    if (system == nullptr) {
        ThrowInitFailure(path);
    }
    s_pUnitSystem.store(system, std::memory_order_release);
}

namespace SpaceTime {

namespace detail {

std::recursive_mutex& UnitMutex() {
    static std::recursive_mutex mutex;
    return mutex;
}

ut_system* UnitSystem() { return s_pUnitSystem.load(std::memory_order_acquire); }

void ConverterDeleter::operator()(cv_converter* c) const {
    std::lock_guard lock(UnitMutex());
    cv_free(c);
}

Unit WrapUnit(ut_unit* u) {
    if (u == nullptr) {
        return {};
    }
    return UnitAccess::Make(std::shared_ptr<ut_unit>(u, [](ut_unit* p) {
        std::lock_guard lock(UnitMutex());
        ut_free(p);
    }));
}

Unit UnitByName(const char* name) {
    ut_system* system = UnitSystem();
    return system != nullptr ? WrapUnit(ut_get_unit_by_name(system, name)) : Unit{};
}

bool FormatUnit(const ut_unit* u, unsigned opts, std::string& text) {
    char buffer[1024];
    const CNumericLocale cLocale;  // scale factors print with a point
    const int length = ut_format(u, buffer, sizeof buffer, opts);
    if (length < 0 || static_cast<size_t>(length) >= sizeof buffer) {
        return false;
    }
    text.assign(buffer, static_cast<size_t>(length));
    return true;
}

}  // namespace detail

namespace {

// Whether `u` converts to `reference`; the lock must be held.
bool Convertible(const Unit& u, const Unit& reference) {
    return u && ut_are_convertible(detail::Raw(u), detail::Raw(reference)) > 0;
}

}  // namespace

Unit ParseUnit(const std::string& units) {
    std::lock_guard lock(detail::UnitMutex());
    ut_system* system = detail::UnitSystem();
    if (system == nullptr) {
        return {};
    }
    // Trimmed here rather than with ut_trim: UDUNITS-2 2.2.28's ut_trim moves the text to the start of
    // the buffer but returns a pointer offset by the leading white space ("  dbar" gives "ar").
    constexpr const char* kSpace = " \t\n\v\f\r";
    const size_t first = units.find_first_not_of(kSpace);
    const std::string text =
        first == std::string::npos ? std::string() : units.substr(first, units.find_last_not_of(kSpace) - first + 1);
    const CNumericLocale cLocale;  // "0.5 m" has a decimal point whatever the host's locale
    return detail::WrapUnit(ut_parse(system, text.c_str(), UT_UTF8));
}

bool IsPressureUnit(const Unit& u) {
    std::lock_guard lock(detail::UnitMutex());
    const Unit pascal = detail::UnitByName("pascal");
    if (!pascal) {
        throw Exception(eInternalError, L"cannot get base pressure unit", {});
    }
    return Convertible(u, pascal);
}

bool IsLengthUnit(const Unit& u) {
    std::lock_guard lock(detail::UnitMutex());
    const Unit meter = detail::UnitByName("meter");
    if (!meter) {
        throw Exception(eInternalError, L"cannot get base length unit", {});
    }
    return Convertible(u, meter);
}

bool IsTimeUnit(const Unit& u) {
    std::lock_guard lock(detail::UnitMutex());
    const Unit reference = ParseUnit("days since 1900-01-01");
    if (!reference) {
        throw Exception(eInternalError, L"cannot get base time reference", {});
    }
    return Convertible(u, reference);
}

}  // namespace SpaceTime
}  // namespace ZorvoDSG
