#pragma once
// The fill value of a variable in the representation of its own element type, so that comparing a
// value read from the file with it can never fail on a type mismatch (NcML may give a _FillValue of
// another type than its variable).

#include <zorvodsg/netcdf/Variable.h>
#include <zorvodsg/values/NcVariant.h>

namespace ZorvoNetCDFDSG::detail {

// Numeric variables: the fill converted to the variable's storage type, or empty when it has no
// value of that type (then no element can equal it). Text variables: the fill's text, or "" when it
// is not text. Variables of a type without storage keep their fill value as it is.
ZorvoDSG::System::NcVariant TypedFill(const ZorvoDSG::Variable& variable);

}  // namespace ZorvoNetCDFDSG::detail
