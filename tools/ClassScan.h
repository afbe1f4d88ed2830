#pragma once
// Reads the features of one class and hands them to a writer: the search filter built from --bbox,
// coordinates moved to longitude/latitude unless --native-crs, times turned into ISO 8601 text.

#include <cstdint>
#include <functional>
#include <optional>
#include <string_view>

#include "BoundingBox.h"
#include "ColumnPlan.h"

namespace ZorvoDSG {
class BasicFeatureClass;
}

namespace zdsg {

class FeatureWriter;

struct ScanSettings {
    std::optional<BoundingBox> bbox;  // in the output coordinates
    bool bNativeCrs = false;
    size_t cColumns = 0;  // columns of the run
    // Called now and then with the number of features written so far.
    std::function<void(uint64_t)> progress;
};

// The number of features written. Throws what the library throws while reading (the caller reports
// it as a refusal of the class), std::runtime_error for a class whose coordinates PROJ cannot move
// or whose kind of feature has no output yet, and OutputError from the writer.
uint64_t ScanClass(ZorvoDSG::BasicFeatureClass& featureClass, const ClassSelection& selection,
                   const ScanSettings& settings, FeatureWriter& writer);

class OutputFile;

// The class's ZorvoJSON document (a point class's is `{}`) into `out`, streamed in chunks while the
// cursor reads: the selected instance variables as fields, the box as the search envelope, and
// coordinates as the file holds them. `separator` goes out before the document's first text, and
// `bWritten` tells whether it did. Throws as ScanClass does; a failure after part of the document went
// out ends its open arrays and objects first, so the output stays valid JSON.
void WriteZorvoJSON(ZorvoDSG::BasicFeatureClass& featureClass, const ClassSelection& selection,
                    const ScanSettings& settings, std::string_view separator, OutputFile& out, bool& bWritten);

}  // namespace zdsg
