#include <zorvodsg/json/JSONObjectKeys.h>

#include <zorvodsg/json/JSONKeyGuard.h>
#include <zorvodsg/json/ZorvoJSONValues.h>

namespace ZorvoDSG {

namespace {

// The text the writer gives the key as a string of its own.
std::string KeyText(std::string_view key) {
    ZorvoJSONBuffer buffer;
    ZorvoJSONWriter writer(buffer);
    WriteJSONText(writer, key);
    return std::string(buffer.GetString(), buffer.GetSize());
}

}  // namespace

JSONObjectKeys::JSONObjectKeys(const std::vector<std::string_view>& keys) {
    JSONKeyGuard guard;
    m_members.reserve(keys.size());
    size_t cWritten = 0;
    for (const std::string_view key : keys) {
        if (!guard.bFirst(key)) {
            m_members.emplace_back();
            continue;
        }
        m_members.push_back((cWritten == 0 ? "" : ",") + KeyText(key) + ":");
        ++cWritten;
    }
}

void JSONObjectKeys::AppendObject(ZorvoJSONBuffer& out, const std::vector<System::NcVariant>& values) const {
    AppendJSON(out, "{");
    for (size_t i = 0; i < m_members.size(); ++i) {
        if (m_members[i].empty()) {
            continue;
        }
        AppendJSON(out, m_members[i]);
        if (i < values.size()) {
            AppendJSONValue(out, values[i]);
        } else {
            AppendJSON(out, "null");
        }
    }
    AppendJSON(out, "}");
}

}  // namespace ZorvoDSG
