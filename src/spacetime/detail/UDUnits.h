#pragma once
// Internal access to the loaded unit system for the unit code of this folder.

#include <udunits2.h>

#include <memory>
#include <mutex>
#include <string>

#include <zorvodsg/spacetime/UnitSystem.h>

namespace ZorvoDSG::SpaceTime::detail {

// Held around every UDUNITS-2 call (its status is process-wide). Recursive so that a unit released
// while it is held can take it again in its deleter.
std::recursive_mutex& UnitMutex();

// The loaded unit system; null before a successful s_InitUDUnits2.
ut_system* UnitSystem();

struct ConverterDeleter {
    void operator()(cv_converter* c) const;
};
using ConverterPtr = std::unique_ptr<cv_converter, ConverterDeleter>;

// The library's own way into a Unit.
struct UnitAccess {
    static ut_unit* Get(const Unit& unit) noexcept { return unit.m_unit.get(); }
    static Unit Make(std::shared_ptr<ut_unit> unit) { return Unit(std::move(unit)); }
};
inline ut_unit* Raw(const Unit& unit) noexcept { return UnitAccess::Get(unit); }

// Owns a unit returned by UDUNITS-2; empty for null.
Unit WrapUnit(ut_unit* u);

// A unit of the database by name, or empty. Call with UnitMutex held.
Unit UnitByName(const char* name);

// Formats `u` with the given ut_format options into `text`; false when it cannot be formatted or does not fit
// in 1024 bytes. Call with UnitMutex held.
bool FormatUnit(const ut_unit* u, unsigned opts, std::string& text);

}  // namespace ZorvoDSG::SpaceTime::detail
