#pragma once
// Codes of the messages appended to an ILog: things skipped or repaired while an operation carried on.

namespace ZorvoDSG::System {

enum eLogCode : long {
    eLogOpeningFile = 1,
    eLogFileRecordRemoved = 2,
    eLogFileRefused = 3,  // a file or group a workspace could not use: "<path>[ (group G)]: <reason>"
    eLogNoFeatureType = 4,
    eLogCFVersionTooOld = 5,
    eLogAncillaryVariableNotFound = 6,
    eLogQueryFeatureClass = 7,
    eLogUnparseableUnits = 11,
    eLogNcMLVariableAttributeAdded = 13,
    eLogNcMLGlobalAttributeAdded = 14,
    eLogNcMLVariableCreated = 15,
    eLogNcMLVariableRenamed = 16,
    eLogAssumedGeographic = 17,
    eLogTooManyConnections = 20,
    eLogVariableTooManyDimensions = 21,
};

}  // namespace ZorvoDSG::System
