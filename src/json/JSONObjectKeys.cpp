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
    m_keys.reserve(keys.size());
    for (const std::string_view key : keys) {
        m_keys.push_back(guard.bFirst(key) ? KeyText(key) : std::string());
    }
}

void JSONObjectKeys::WriteKey(ZorvoJSONWriter& writer, size_t i) const {
    WriteJSONRaw(writer, m_keys[i], rapidjson::kStringType);
}

}  // namespace ZorvoDSG
