// Which variables are coordinates, and what each one measures.

#include <array>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include <zorvodsg/values/LogCodes.h>
#include <zorvodsg/host/Utf8.h>
#include <zorvodsg/netcdf/NetCDFFile.h>
#include <zorvodsg/spacetime/TimeUnits.h>
#include <zorvodsg/spacetime/UnitSystem.h>
#include <zorvodsg/values/Ascii.h>

using ZorvoDSG::Host::Utf8ToWide;

namespace ZorvoNetCDFDSG {

using ZorvoDSG::CoordinateVariableId;
using ZorvoDSG::Variable;
using ZorvoDSG::System::ILog;
using namespace ZorvoDSG::SpaceTime;

namespace {


constexpr const char* kAssumedGeographicName = "zorvo_assumed_geographic";

using ZorvoDSG::System::AsciiIEquals;

template <size_t N>
bool IsOneOf(std::string_view text, const std::array<std::string_view, N>& names) {
    for (const auto name : names) {
        if (AsciiIEquals(text, name)) {
            return true;
        }
    }
    return false;
}

constexpr std::array<std::string_view, 6> kNorthUnits{"degrees_north", "degree_north", "degree_N",
                                                      "degrees_N",     "degreeN",      "degreesN"};
constexpr std::array<std::string_view, 6> kEastUnits{"degrees_east", "degree_east", "degree_E",
                                                     "degrees_E",    "degreeE",     "degreesE"};

constexpr std::array<std::string_view, 2> kEllipsoidHeights{"height_above_reference_ellipsoid",
                                                            "sea_surface_height_above_reference_ellipsoid"};
constexpr std::array<std::string_view, 1> kEllipsoidDepths{"sea_floor_depth_below_reference_ellipsoid"};
constexpr std::array<std::string_view, 10> kGeoidHeights{"surface_altitude",
                                                         "height_above_geopotential_datum",
                                                         "height_above_mean_sea_level",
                                                         "sea_surface_height_above_geoid",
                                                         "sea_surface_height_above_geopotential_datum",
                                                         "sea_surface_height_above_mean_sea_level",
                                                         "sea_surface_height_above_sea_level",
                                                         "sea_surface_height",
                                                         "freezing_level_altitude",
                                                         "ground_level_altitude"};
constexpr std::array<std::string_view, 4> kGeoidDepths{"depth_below_geoid", "sea_floor_depth_below_geoid",
                                                       "sea_floor_depth_below_geopotential_datum",
                                                       "sea_floor_depth_below_mean_sea_level"};

struct TidalDatum {
    std::string_view standardName;
    eVerticalDatumModel model;
};
constexpr std::array<TidalDatum, 5> kTidalHeights{{
    {"tidal_sea_surface_height_above_lowest_astronomical_tide", eVerticalDatumLowestAstronomicalTide},
    {"tidal_sea_surface_height_above_mean_higher_high_water", eVerticalDatumMeanHigherHighWater},
    {"tidal_sea_surface_height_above_mean_lower_low_water", eVerticalDatumMeanLowerLowWater},
    {"tidal_sea_surface_height_above_mean_low_water_springs", eVerticalDatumMeanLowWaterSprings},
    {"tidal_sea_surface_height_above_mean_sea_level", eVerticalDatumMeanSeaLevel},
}};

// The vertical datum a length coordinate's standard name implies; heights are tested before depths.
eVerticalDatumModel VerticalDatumModel(const std::string& standardName) {
    eVerticalDatumModel tidal = eVerticalDatumUnspecified;
    if (NetCDFFile::s_IsEllipsoidHeight(standardName)) {
        return eVerticalDatumEllipsoid;
    }
    if (NetCDFFile::s_IsGeoidHeight(standardName)) {
        return eVerticalDatumGeoid;
    }
    if (NetCDFFile::s_IsTidalHeight(standardName, tidal)) {
        return tidal;
    }
    if (NetCDFFile::s_IsEllipsoidDepth(standardName)) {
        return eVerticalDatumEllipsoid;
    }
    if (NetCDFFile::s_IsGeoidDepth(standardName)) {
        return eVerticalDatumGeoid;
    }
    return eVerticalDatumUnspecified;
}

TimeReference ParseTimeUnitsAsAsked(const std::string& units, const OpenOptions& options) {
    return options.bIsoTimeUnits ? ParseIsoTimeUnits(units) : ParseTimeUnits(units);
}

// Classifies by the units alone (the variable has a units attribute). False when the variable is not
// a coordinate; `coord` is filled otherwise.
bool ClassifyByUnits(const Variable& variable, const std::string& standardName, const OpenOptions& options,
                     ILog& log, CoordinateVariableId& coord) {
    const std::string units = variable.UnitsString();
    const Unit unit = ParseUnit(units);
    if (!unit) {
        log.AddMessage(ZorvoDSG::System::eLogUnparseableUnits, Utf8ToWide(units));
        return false;
    }
    if (IsPressureUnit(unit)) {
        // Pressure grows downward whatever "positive" says.
        coord.role = eCoordinateZ;
        coord.bZUp = false;
        return true;
    }
    // A length without "positive" is an ordinary measurement (a distance, a wave height), not a
    // vertical coordinate.
    if (IsLengthUnit(unit) && variable.HasAttribute("positive")) {
        coord.role = eCoordinateZ;
        coord.bZUp = std::get<std::string>(variable.AttributeValue("positive")) == "up";
        coord.verticalDatumModel = VerticalDatumModel(standardName);
        return true;
    }
    if (IsTimeUnit(unit)) {
        coord.timeReference = ParseTimeUnitsAsAsked(units, options);
        coord.role = eCoordinateT;
        return true;
    }
    if (IsOneOf(units, kNorthUnits)) {
        coord.role = eCoordinateY;
        return true;
    }
    if (IsOneOf(units, kEastUnits)) {
        coord.role = eCoordinateX;
        return true;
    }
    return false;
}

}  // namespace

bool NetCDFFile::s_IsEllipsoidHeight(const std::string& standardName) {
    return IsOneOf(standardName, kEllipsoidHeights);
}

bool NetCDFFile::s_IsEllipsoidDepth(const std::string& standardName) { return IsOneOf(standardName, kEllipsoidDepths); }

bool NetCDFFile::s_IsGeoidHeight(const std::string& standardName) { return IsOneOf(standardName, kGeoidHeights); }

bool NetCDFFile::s_IsGeoidDepth(const std::string& standardName) { return IsOneOf(standardName, kGeoidDepths); }

bool NetCDFFile::s_IsTidalHeight(const std::string& standardName, eVerticalDatumModel& model) {
    model = eVerticalDatumUnspecified;
    for (const auto& tidal : kTidalHeights) {
        if (AsciiIEquals(standardName, tidal.standardName)) {
            model = tidal.model;
            return true;
        }
    }
    return false;
}

void NetCDFFile::CheckCreateAssumedGeographicSR(ILog& log) {
    std::vector<long> ungridded;
    for (const auto& [id, variable] : m_variables) {
        if (variable.HasAttribute("coordinates") && !variable.HasAttribute("grid_mapping")) {
            ungridded.push_back(id);
        }
    }
    if (ungridded.empty()) {
        return;
    }
    const long id = NextFreeVariableId();
    Variable geographic(this, m_fullGroupName, id, kAssumedGeographicName);
    geographic.SetAttributeValue("epsg_code", std::string("EPSG:4326"));
    m_variables.emplace(id, std::move(geographic));

    for (const long ungriddedId : ungridded) {
        Variable& variable = m_variables.at(ungriddedId);
        variable.SetAttributeValue("grid_mapping", std::string(kAssumedGeographicName));
        log.AddMessage(ZorvoDSG::System::eLogAssumedGeographic, Utf8ToWide(variable.Name()));
    }
}

void NetCDFFile::ClassifyCoordinateVariables(ILog& log, const OpenOptions& options) {
    for (const auto& [id, variable] : m_variables) {
        const std::string standardName = variable.StandardName();
        const std::string axis = variable.Axis();

        CoordinateVariableId coord;
        coord.id = variable.Id();
        coord.role = eCoordinateUnclassified;
        coord.verticalDatumModel = eVerticalDatumUnspecified;
        coord.bZUp = true;

        // Latitude is tested before longitude and time, so a standard name wins over a conflicting axis.
        if (AsciiIEquals(standardName, "latitude") || axis == "Y") {
            coord.role = eCoordinateY;
        } else if (AsciiIEquals(standardName, "longitude") || axis == "X") {
            coord.role = eCoordinateX;
        } else if (AsciiIEquals(standardName, "time") || axis == "T") {
            coord.timeReference = ParseTimeUnitsAsAsked(variable.UnitsString(), options);
            coord.role = eCoordinateT;
        } else if (!variable.HasAttribute("units") || !ClassifyByUnits(variable, standardName, options, log, coord)) {
            continue;
        }

        m_name2CoordVar.try_emplace(variable.Name(), coord);
        m_name2CoordVar.try_emplace(standardName, coord);
    }
}

}  // namespace ZorvoNetCDFDSG
