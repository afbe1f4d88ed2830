#pragma once
// The program's string resources (error texts, ids 101 to 146) and the localized-resource loader
// that stands in for the host framework's.

#include <string>

namespace ZorvoDSG::Host {

struct ResourceModule;
using HMODULE = const ResourceModule*;

// The program's own compiled-in resource module.
HMODULE ThisModuleResources();
// The resource module for the current language, or null when there is none.
HMODULE LoadLocalizedRes(HMODULE own);
// The module chosen once at start-up: the localized one, else the program's own.
HMODULE ResourceModuleHandle();
// Text of a string resource; empty for a missing id or a null module.
std::wstring LoadResourceString(HMODULE module, int id);

}  // namespace ZorvoDSG::Host
