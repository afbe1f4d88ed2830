#pragma once
// Queries about the units of vertical coordinate values, given as their units text.

#include <string>
#include <utility>

namespace ZorvoDSG::SpaceTime {

// Whether the Z units are a pressure.
bool bPressureUnits(const std::string& zUnits);

// The value of one pascal in the Z units (0.0001 for dbar). Throws std::runtime_error
// "not pressure units" when they are not a pressure.
double _1Pascal(const std::string& zUnits);

// The long name of the Z unit with its first letter upper-cased, and the metres in one Z unit
// ({"Meter", 1.0} for "m").
std::pair<std::string, double> ZUnits(const std::string& zUnits);

}  // namespace ZorvoDSG::SpaceTime
