#include "UnitDatabase.h"

#include <udunits2.h>

#include <cstdlib>
#include <filesystem>
#include <vector>

#include "Names.h"
#include <zorvodsg/spacetime/UnitSystem.h>

#ifndef ZDSG_DEFAULT_UDUNITS2_XML
#define ZDSG_DEFAULT_UDUNITS2_XML ""
#endif

namespace zdsg {

namespace {

bool bExistingFile(const std::string& path) {
    std::error_code error;
    return !path.empty() && std::filesystem::is_regular_file(path, error);
}

}  // namespace

std::optional<std::string> FindUDUnits2Database() {
    std::vector<std::string> candidates;
    if (const char* fromEnvironment = std::getenv("UDUNITS2_XML_PATH")) {
        candidates.emplace_back(fromEnvironment);
    }
    candidates.emplace_back("/usr/share/xml/udunits/udunits2.xml");
    candidates.emplace_back(ZDSG_DEFAULT_UDUNITS2_XML);
    ut_status status = UT_SUCCESS;
    if (const char* builtIn = ut_get_path_xml(nullptr, &status)) {
        candidates.emplace_back(builtIn);
    }
    for (const auto& candidate : candidates) {
        if (bExistingFile(candidate)) {
            return candidate;
        }
    }
    return std::nullopt;
}

std::optional<std::string> LoadUDUnits2(const std::string& path, std::string& error) {
    std::optional<std::string> chosen = path.empty() ? FindUDUnits2Database() : std::optional<std::string>(path);
    if (!chosen) {
        error = "no UDUNITS-2 database found (set UDUNITS2_XML_PATH or use --udunits)";
        return std::nullopt;
    }
    try {
        ZorvoDSG::s_InitUDUnits2(*chosen);
    } catch (...) {
        error = CurrentExceptionText();
        return std::nullopt;
    }
    return chosen;
}

}  // namespace zdsg
