#pragma once
// The gk calls that every coordinate-system builder of this folder repeats: printing, parsing and
// the error raised when gk refuses to build something.

#include <string>

#include <zorvodsg/host/gk/GkObjectPtr.h>

namespace ZorvoDSG::SpaceTime::detail {

// The object's WKT. An object gk cannot print is a broken invariant (std::runtime_error).
std::string GkWkt(Host::gk_object const* object);

// The object parsed from `wkt`; Exception eBadWKT "<gk error text>: <wkt>" when gk refuses it.
Host::GkObjectPtr GkParseWkt(const std::string& wkt);

// Checks an object gk has just built: a null one raises std::runtime_error "<what>: <gk's reason>".
Host::GkObjectPtr GkRequire(Host::gk_object* object, const char* what);

}  // namespace ZorvoDSG::SpaceTime::detail
