#include <zorvodsg/json/CloseOpenLevels.h>

namespace ZorvoDSG {

namespace {

// RapidJSON keeps its nesting in a protected stack; a derived class may name the member.
struct LevelAccess : ZorvoJSONWriter {
    using ZorvoJSONWriter::Level;
    static constexpr auto s_levels = &LevelAccess::level_stack_;
};

}  // namespace

void CloseOpenLevels(ZorvoJSONWriter& writer) {
    auto& levels = writer.*LevelAccess::s_levels;
    while (!levels.Empty()) {
        const LevelAccess::Level& top = *levels.template Top<LevelAccess::Level>();
        if (top.inArray) {
            writer.EndArray();
            continue;
        }
        if (top.valueCount % 2 == 1) {  // members alternate key, value
            writer.Null();
        }
        writer.EndObject();
    }
}

}  // namespace ZorvoDSG
