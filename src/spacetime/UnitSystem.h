#pragma once
// The process-wide UDUNITS-2 unit system and the unit helpers built on it.
//
// UDUNITS-2 keeps its status (and its error handler) in process-wide variables, so every call into it
// made here holds one process-wide lock; unit operations may therefore be called from any thread.

#include <filesystem>
#include <memory>
#include <string>

union ut_unit;

namespace ZorvoDSG {

// Loads the UDUNITS-2 XML database once per process. Later calls, whatever their path, do nothing once
// a load has succeeded; after a failed load the next call tries again. Concurrent first calls wait for
// the one that loads. Throws Exception eInternalError "udunits initialization failure" with the path.
void s_InitUDUnits2(std::filesystem::path path);

namespace SpaceTime {

// A UDUNITS-2 unit freed with ut_free; empty when a text could not be parsed.
using UnitPtr = std::shared_ptr<ut_unit>;

// Parses a unit text (surrounding white space ignored); empty when unparseable or before the unit
// system is loaded.
UnitPtr ParseUnit(const std::string& units);

// Whether `u` converts to pascal; an empty `u` is not. Throws eInternalError when pascal is unknown.
bool IsPressureUnit(const UnitPtr& u);

// Whether `u` converts to meter; an empty `u` is not. Throws eInternalError when meter is unknown.
bool IsLengthUnit(const UnitPtr& u);

// Whether `u` converts to "days since 1900-01-01"; an empty `u` is not. Throws eInternalError when that
// reference cannot be parsed.
bool IsTimeUnit(const UnitPtr& u);

}  // namespace SpaceTime
}  // namespace ZorvoDSG
