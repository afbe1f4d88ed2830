#pragma once
// The keys of an object that is written many times, such as the attributes of every feature of a
// document: each key's JSON text (valid UTF-8, escaped, quoted) is made once, and a key that repeats
// an earlier one is marked to be skipped, so that no object gets a key twice.

#include <string>
#include <string_view>
#include <vector>

#include <zorvodsg/json/ZorvoJSONWriter.h>

namespace ZorvoDSG {

class JSONObjectKeys {
public:
    explicit JSONObjectKeys(const std::vector<std::string_view>& keys);

    size_t Size() const { return m_keys.size(); }
    // False for a key that an earlier one repeats: its member is not written.
    bool bWritten(size_t i) const { return !m_keys[i].empty(); }
    // Writes key i (which must be written).
    void WriteKey(ZorvoJSONWriter& writer, size_t i) const;

private:
    std::vector<std::string> m_keys;  // JSON text of each key; empty when skipped
};

}  // namespace ZorvoDSG
