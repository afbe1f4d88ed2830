#pragma once
// Finds and loads the UDUNITS-2 database, so that the tool needs no configuration.

#include <optional>
#include <string>

namespace zdsg {

// The first existing file of: $UDUNITS2_XML_PATH, the Debian location, the database this build was
// configured with, UDUNITS-2's own default. Nothing when none exists.
std::optional<std::string> FindUDUnits2Database();

// Loads `path` (or the database found above when `path` is empty) with ZorvoDSG::s_InitUDUnits2.
// Returns the path loaded; on failure returns nothing and sets `error`.
std::optional<std::string> LoadUDUnits2(const std::string& path, std::string& error);

}  // namespace zdsg
