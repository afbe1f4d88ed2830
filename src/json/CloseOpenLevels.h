#pragma once
// Ends every array and object a writer still has open, so that a document cut short by a failure
// between two values is still valid JSON (a key left without its value gets null). The caller says
// that the document is incomplete by other means (an error message, an exit status).

#include <zorvodsg/json/ZorvoJSONWriter.h>

namespace ZorvoDSG {

void CloseOpenLevels(ZorvoJSONWriter& writer);

}  // namespace ZorvoDSG
