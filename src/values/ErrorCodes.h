#pragma once
// The system's own error codes. Codes above -10000 are netCDF-C status codes.

namespace ZorvoDSG {

enum eNcErr : long {
    eBadFeatureType = -10001,
    eMultipleCfRoles = -10002,
    eInstanceDimension = -10003,
    eRowCountDimension = -10004,
    eSRConflict = -10005,
    eCoordNotFound = -10006,
    eCoordUnclassified = -10007,
    eCoordNoUnits = -10008,
    eNetCDFWorkspaceExists = -10009,
    eNetCDFWorkspaceDoesNotExist = -10010,
    eNotANetCDFWorkspace = -10011,
    eSampleCoordinateMismatch = -10012,
    eMissingObservationVariable = -10013,
    eUnknownFeatureType = -10014,
    eBadSampleDimension = -10015,
    eObservationCoordinateMismatch = -10016,
    eAttributeNotPresent = -10017,
    eMissingCoordinates = -10020,
    eMissingZorTRowCountVar = -10021,
    eVariableNotFound = -10022,
    eCannotOpenNcmlFile = -10025,
    eCannotParseNcmlFile = -10026,
    eInvalidNcML = -10027,
    eNoObservationVariables = -10028,
    eMissingCFRole = -10029,
    eFeatureTypeNotImplemented = -10030,
    eMissingVerticalUnits = -10031,
    eMissingTimeUnits = -10032,
    eBadUnitConversion = -10033,
    eBadTimeUnits = -10034,
    eBadTimeZoneOffset = -10035,
    eBadTimeReference = -10036,
    eHigherDimensionStrings = -10037,
    eIncompleteNcMLAttribute = -10038,
    eBadVerticalDatumName = -10039,
    eMissingTrajectoryRowCountVar = -10040,
    eBadWKT = -10041,
    eWKTNotHorizontal = -10042,
    eWKTNotVertical = -10043,
    eVerticalDatumModelMismatch = -10044,
    eBadCoordinateSystemName = -10045,
    eUnsupportedNetCDFFormat = -10046,
    eInstanceDimensionMismatch = -10047,
    eNotDSGConformant = -109999,
    eInternalError = -110000,
};

// String-table id of an error code's text; 134 ("unrecognized error") for codes the table lacks.
int ErrorResourceId(long code);

}  // namespace ZorvoDSG
