#include <zorvodsg/host/StringTable.h>

#include <algorithm>
#include <array>
#include <iterator>

namespace ZorvoDSG::Host {

namespace {

struct StringResource {
    int id;
    const wchar_t* text;
};

// The program's own string table, sorted by id.
constexpr StringResource kStrings[] = {
    {101, L"eBadFeatureType: not a dsg type name"},
    {102, L"eMultipleCfRoles: Multiple cf_roles per nc file not yet implemented"},
    {103, L"eInstanceDimension: instance dimension must be 1 (or 2 for a netCDF classic string-valued instance dimension)"},
    {104, L"eRowCountDimension:  all row count variables need to have one dimension"},
    {105, L"eSRConflict: more than one SR specified for observations from the same dataset"},
    {106, L"eCoordNotFound: a name in the coordinates attribute array does not exist as a coordinate variable in the nc file"},
    {107, L"eCoordUnclassified: type of coordinate variable cannot be determined"},
    {108, L"eCoordNoUnits: a coord variable must have a units attribute"},
    {109, L"eNetCDFWorkspaceExists: creating an existing netcdf workspace"},
    {110, L"eNetCDFWorkspaceDoesNotExist: opening a non - existant netcdf workspace"},
    {111, L"eNotANetCDFWorkspace: not ncw or does not contain conf.json, or other illegal items in directory"},
    {112, L"eSampleCoordinateMismatch: number of variables with sample_dimension attribute does not match number of variables with coordinate attribute"},
    {113, L"eMissingObservationVariable: a variable with a sample dimension could not be found that had both 'coordinates' and 'grid_mapping' attributes"},
    {114, L"eUnknownFeatureType: cannot determine dsg feature type of .nc file"},
    {115, L"eBadSampleDimension: the dimension named by a sample_dimension attribute could not be found in the.nc file"},
    {116, L"eObservationCoordinateMismatch: all observation variables for an instance must have the same set of auxiliary coordinates"},
    {117, L"eAttributeNotPresent: a required attribute was not associated with the variable"},
    {118, L"eVariableNotFound: variable not found in nc file"},
    {119, L"eNoObservationVariables: no variables with coordinates attribute present in .nc file"},
    {120, L"eMissingCFRole: A variable with the cf_role attribute is needed to identify the instance dimension for the feature class"},
    {121, L"eFeatureTypeNotImplemented: DSG feature type not implemented"},
    {122, L"eMissingVerticalUnits: vertical units information is missing"},
    {123, L"eMissingTimeUnits: time units and reference time information is missing"},
    {124, L"eMissingCoordinates: x, y, z or time coordinate variable could not be found"},
    {125, L"eInternalError: an internal error in the DSG conversion library was detected"},
    {126, L"eMissingZorTRowCountVar: cannot find row count for either vertical or time auxiliary coordinate variable"},
    {127, L"eBadUnitConversion: Cannot convert units"},
    {128, L"eBadTimeUnits: cannot parse time units"},
    {129, L"eBadTimeZoneOffset: bad time zone offset"},
    {130, L"eBadTimeReference: cannot convert base time reference to win32 FILETIME"},
    {131, L"eInvalidNcML: did not find expected NcML element or attribute"},
    {132, L"eCannotOpenNcmlFile: cannot open the ncml file. Check the file extension"},
    {133, L"eCannotParseNcmlFile: msxml parse error while opening ncml file"},
    {134, L"unrecognized error"},
    {135, L"higher dimension string variables not yet implemented"},
    {136, L"An ncml attribute element must specify name, type and value"},
    {137, L"Cannot create a vertical datum from the specified name"},
    {138, L"Cannot find row count var for coordinates of contiguous ragged array trajectories"},
    {139, L"Cannot parse coordinate system well known text"},
    {140, L"WKT object is not a projected or geographic coordinate system"},
    {141, L"WKT object is not a vertical coordinate system"},
    {142, L"mismatch between vertical datum model required by standard name and declared vertical datum"},
    {143, L"Cannot create coordinate system from specified name or wkid"},
    {144, L"Netcdf formats other than classic and version 4 are not supported"},
    {145, L"The number of instance dimensions is not compatible with number of observation dimensions. Check which variable has been assigned the cf_role attribute."},
    {146, L"The input nc file does not conform to the CF Discrete Sampling Geometry conventions."},
};

}  // namespace

struct ResourceModule {
    const StringResource* begin;
    const StringResource* end;
};

namespace {
constexpr ResourceModule kOwnModule{std::begin(kStrings), std::end(kStrings)};
}

HMODULE ThisModuleResources() { return &kOwnModule; }

HMODULE LoadLocalizedRes(HMODULE /*own*/) {
    // Only the built-in language exists; callers fall back to their own module.
    return nullptr;
}

HMODULE ResourceModuleHandle() {
    // Chosen once, as a library does when it is loaded.
    static const HMODULE module = [] {
        HMODULE localized = LoadLocalizedRes(ThisModuleResources());
        return localized ? localized : ThisModuleResources();
    }();
    return module;
}

std::wstring LoadResourceString(HMODULE module, int id) {
    if (module == nullptr) {
        return {};
    }
    const auto* found = std::lower_bound(module->begin, module->end, id,
                                         [](const StringResource& r, int key) { return r.id < key; });
    if (found == module->end || found->id != id) {
        return {};
    }
    return found->text;
}

}  // namespace ZorvoDSG::Host
