#include <zorvodsg/values/Exception.h>

#include <netcdf.h>

#include <algorithm>
#include <iterator>

#include <zorvodsg/host/Utf8.h>
#include <zorvodsg/values/NcLock.h>

using ZorvoDSG::Host::BString;
using ZorvoDSG::Host::ResourceModuleHandle;
using ZorvoDSG::Host::Utf8ToWide;

namespace ZorvoDSG {

namespace {

struct CodeResource {
    long code;
    int id;
};

constexpr CodeResource kCodeResources[] = {
    {eBadFeatureType, 101},
    {eMultipleCfRoles, 102},
    {eInstanceDimension, 103},
    {eRowCountDimension, 104},
    {eSRConflict, 105},
    {eCoordNotFound, 106},
    {eCoordUnclassified, 107},
    {eCoordNoUnits, 108},
    {eNetCDFWorkspaceExists, 109},
    {eNetCDFWorkspaceDoesNotExist, 110},
    {eNotANetCDFWorkspace, 111},
    {eSampleCoordinateMismatch, 112},
    {eMissingObservationVariable, 113},
    {eUnknownFeatureType, 114},
    {eBadSampleDimension, 115},
    {eObservationCoordinateMismatch, 116},
    {eAttributeNotPresent, 117},
    {eMissingCoordinates, 124},
    {eMissingZorTRowCountVar, 126},
    {eVariableNotFound, 118},
    {eCannotOpenNcmlFile, 132},
    {eCannotParseNcmlFile, 133},
    {eInvalidNcML, 131},
    {eNoObservationVariables, 119},
    {eMissingCFRole, 120},
    {eFeatureTypeNotImplemented, 121},
    {eMissingVerticalUnits, 122},
    {eMissingTimeUnits, 123},
    {eBadUnitConversion, 127},
    {eBadTimeUnits, 128},
    {eBadTimeZoneOffset, 129},
    {eBadTimeReference, 130},
    {eHigherDimensionStrings, 135},
    {eIncompleteNcMLAttribute, 136},
    {eBadVerticalDatumName, 137},
    {eMissingTrajectoryRowCountVar, 138},
    {eBadWKT, 139},
    {eWKTNotHorizontal, 140},
    {eWKTNotVertical, 141},
    {eVerticalDatumModelMismatch, 142},
    {eBadCoordinateSystemName, 143},
    {eUnsupportedNetCDFFormat, 144},
    {eInstanceDimensionMismatch, 145},
    {eNotDSGConformant, 146},
    {eInternalError, 125},
};

constexpr int kUnrecognizedErrorId = 134;
constexpr long kFirstOwnCode = -10000;

}  // namespace

int ErrorResourceId(long code) {
    const auto* found = std::find_if(std::begin(kCodeResources), std::end(kCodeResources),
                                     [code](const CodeResource& r) { return r.code == code; });
    return found == std::end(kCodeResources) ? kUnrecognizedErrorId : found->id;
}

Exception::Exception(long code, const std::wstring& detail, const std::filesystem::path& path)
    : std::runtime_error("netcdf error"), m_path(path), m_detail(detail), m_code(code) {}

Exception::~Exception() = default;

BString Exception::s_NcErrToWString(long code) {
    if (code > kFirstOwnCode) {
        std::string text;
        {
            const System::NcLock lock;  // copied under the lock: the text may live in a shared buffer
            text = nc_strerror(static_cast<int>(code));
        }
        return BString(Utf8ToWide(text));
    }
    return BString(ErrorResourceId(code), ResourceModuleHandle());
}

BString Exception::ToString() const {
    BString text = s_NcErrToWString(m_code);
    text += L": ";
    text += BString(m_detail);
    text += L": ";
    // Native paths are UTF-8 bytes here; path::wstring() would convert through the C locale and
    // throw for any non-ASCII name.
    text += BString(Utf8ToWide(m_path.native()));
    return text;
}

}  // namespace ZorvoDSG
