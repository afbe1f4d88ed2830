#pragma once
// The ZorvoJSON feature-set document of a profile, time-series or trajectory class: its name, its
// fields and every feature that one search finds, written while the cursor reads them. Also the
// entry point that streams any class's document to an output stream with bounded memory.
//
// Failures: a field type that no cursor can read (Variable::ToZorvoJSON) fails before anything is
// written; the cursor's failures leave the document unfinished, and the text must be discarded.

#include <functional>
#include <iosfwd>

#include <zorvodsg/cursor/SpatialFilter.h>
#include <zorvodsg/featureclass/IFeatureClass.h>
#include <zorvodsg/json/ZorvoJSONWriter.h>

namespace ZorvoDSG {

class ZorvoJSONFeatureSet {
public:
    // Called after each feature is written; a caller that streams empties the writer's buffer there.
    using FeatureWritten = std::function<void()>;
    // Buffered bytes above which s_Stream writes to the stream.
    static constexpr size_t kStreamChunk = 64 * 1024;

    // The search used when the caller gives none: no spatial restriction and every instance variable
    // of the class by its group-qualified name, so that each feature carries a value for each field.
    static SpatialFilter s_DefaultFilter(const IFeatureClass& featureClass);

    // The feature set of `featureClass`. With a filter, its envelope restricts the features and its
    // instance-variable names select the fields (matched as a cursor matches them, a name given twice
    // written once); its observation variables are not read, since no document holds them.
    static void s_Write(IFeatureClass& featureClass, ZorvoJSONWriter& writer);
    static void s_Write(IFeatureClass& featureClass, const SpatialFilter& filter, ZorvoJSONWriter& writer,
                        const FeatureWritten& featureWritten = {});

    // The class's document (a point class writes its own, `{}`) to `out`, written in chunks of about
    // kStreamChunk bytes as the features are read. A stream that fails makes it throw
    // std::runtime_error "cannot write the ZorvoJSON document"; text already written stays written.
    static void s_Stream(IFeatureClass& featureClass, std::ostream& out);
    static void s_Stream(IFeatureClass& featureClass, const SpatialFilter& filter, std::ostream& out);
};

}  // namespace ZorvoDSG
