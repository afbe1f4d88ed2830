#pragma once
// The process-wide UDUNITS-2 unit system and the unit helpers built on it.
//
// UDUNITS-2 keeps its status (and its error handler) in process-wide variables, so every call into it
// made here holds one process-wide lock; unit operations may therefore be called from any thread.
// Units are opaque: nothing outside the library reaches UDUNITS-2 without that lock.

#include <filesystem>
#include <memory>
#include <string>
#include <utility>

union ut_unit;

namespace ZorvoDSG {

// Loads the UDUNITS-2 XML database once per process. Later calls, whatever their path, do nothing once
// a load has succeeded; after a failed load the next call tries again. Concurrent first calls wait for
// the one that loads. Throws Exception eInternalError "udunits initialization failure" with the path.
void s_InitUDUnits2(std::filesystem::path path);

namespace SpaceTime {

namespace detail {
struct UnitAccess;
}

// A parsed unit, shared by its copies and released under the lock; empty when a text could not be
// parsed.
class Unit {
public:
    Unit() = default;
    explicit operator bool() const noexcept { return m_unit != nullptr; }

private:
    friend struct detail::UnitAccess;
    explicit Unit(std::shared_ptr<ut_unit> unit) : m_unit(std::move(unit)) {}

    std::shared_ptr<ut_unit> m_unit;
};

// Parses a unit text (surrounding white space ignored); empty when unparseable or before the unit
// system is loaded.
Unit ParseUnit(const std::string& units);

// Whether `u` converts to pascal; an empty `u` is not. Throws eInternalError when pascal is unknown.
bool IsPressureUnit(const Unit& u);

// Whether `u` converts to meter; an empty `u` is not. Throws eInternalError when meter is unknown.
bool IsLengthUnit(const Unit& u);

// Whether `u` converts to "days since 1900-01-01"; an empty `u` is not. Throws eInternalError when that
// reference cannot be parsed.
bool IsTimeUnit(const Unit& u);

}  // namespace SpaceTime
}  // namespace ZorvoDSG
