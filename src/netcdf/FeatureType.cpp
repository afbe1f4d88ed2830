#include <zorvodsg/netcdf/FeatureType.h>

#include <array>
#include <cstdio>
#include <locale>
#include <sstream>
#include <string_view>
#include <variant>

#include <zorvodsg/netcdf/NetCDFFile.h>
#include <zorvodsg/values/Ascii.h>

namespace ZorvoDSG {

namespace {

struct FeatureTypeSpelling {
    std::string_view text;
    eFeatureType type;
};

// Tested in this order; the "_id" spellings are the cf_role values that name the same kinds.
constexpr std::array<FeatureTypeSpelling, 9> kSpellings{{
    {"point", eFeaturePoint},
    {"profile", eFeatureProfile},
    {"profile_id", eFeatureProfile},
    {"timeSeries", eFeatureTimeSeries},
    {"timeSeries_id", eFeatureTimeSeries},
    {"timeSeriesProfile", eFeatureTimeSeriesProfile},
    {"trajectory", eFeatureTrajectory},
    {"trajectory_id", eFeatureTrajectory},
    {"trajectoryProfile", eFeatureTrajectoryProfile},
}};

}  // namespace

eFeatureType ParseFeatureType(const std::string& text) {
    for (const auto& spelling : kSpellings) {
        if (System::AsciiIEquals(text, spelling.text)) {
            return spelling.type;
        }
    }
    return eFeatureUnknown;
}

std::string FeatureTypeName(eFeatureType type) {
    switch (type) {
        case eFeaturePoint: return "point";
        case eFeatureProfile: return "profile";
        case eFeatureTimeSeries: return "timeSeries";
        case eFeatureTrajectory: return "trajectory";
        case eFeatureTimeSeriesProfile: return "timeSeriesProfile";
        case eFeatureTrajectoryProfile: return "trajectoryProfile";
        case eFeatureUnknown: break;
    }
    return "unknown";
}

}  // namespace ZorvoDSG

namespace ZorvoNetCDFDSG {

using ZorvoDSG::eFeatureType;
using ZorvoDSG::VersionNumber;

eFeatureType NetCDFFile::FeatureType() const {
    if (!m_globals.HasAttribute("featureType")) {
        return ZorvoDSG::eFeatureUnknown;
    }
    // A netCDF-4 string attribute is stored with a line feed after its value; the name is the text
    // without it.
    std::string text = std::get<std::string>(m_globals.AttributeValue("featureType"));
    if (!text.empty() && text.back() == '\n') {
        text.pop_back();
    }
    return ZorvoDSG::ParseFeatureType(text);
}

VersionNumber NetCDFFile::CFConventionsVersion() const {
    if (!m_globals.HasAttribute("Conventions")) {
        return {};
    }
    // Conventions may list several conventions ("CF-1.6 ACDD-1.3"); the first CF token decides.
    std::istringstream tokens(std::get<std::string>(m_globals.AttributeValue("Conventions")));
    tokens.imbue(std::locale::classic());
    std::string token;
    while (tokens >> token) {
        unsigned short major = 0;
        unsigned short minor = 0;
        if (std::sscanf(token.c_str(), "%*[cC]%*[fF]-%hu.%hu", &major, &minor) == 2) {
            return {major, minor};
        }
    }
    return {};
}

}  // namespace ZorvoNetCDFDSG
