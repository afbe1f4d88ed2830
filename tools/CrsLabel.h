#pragma once
// Short human names for coordinate systems given as WKT, for reports that do not print the WKT.

#include <string>

namespace zdsg {

// "AUTHORITY:CODE" when the WKT carries an identifier; empty otherwise or when PROJ cannot read it.
std::string CrsIdentifier(const std::string& wkt);

// "WGS 84 (EPSG:4326)"; without an identifier the name with the projection method and the datum
// ("UTM-like (Transverse Mercator, datum World Geodetic System 1984)"); "unreadable WKT" when PROJ
// cannot read it.
std::string CrsLabel(const std::string& wkt);

}  // namespace zdsg
