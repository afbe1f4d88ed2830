#pragma once
// The keys of an object that is written many times, such as the attributes of every feature of a
// document: each key's JSON text (valid UTF-8, escaped, quoted) is made once, and a key that repeats
// an earlier one is marked to be skipped, so that no object gets a key twice.

#include <string>
#include <string_view>
#include <vector>

#include <zorvodsg/json/ZorvoJSONWriter.h>
#include <zorvodsg/values/NcVariant.h>

namespace ZorvoDSG {

class JSONObjectKeys {
public:
    explicit JSONObjectKeys(const std::vector<std::string_view>& keys);

    size_t Size() const { return m_members.size(); }
    // False for a key that an earlier one repeats: its member is not written.
    bool bWritten(size_t i) const { return !m_members[i].empty(); }
    // Appends the object whose members are the written keys with the values of the same index (null
    // for a key past the values), each value as WriteJSONValue writes it.
    void AppendObject(ZorvoJSONBuffer& out, const std::vector<System::NcVariant>& values) const;

private:
    // What precedes each written member's value (`,"key":`, the key escaped and valid UTF-8); empty
    // for a key that is skipped.
    std::vector<std::string> m_members;
};

}  // namespace ZorvoDSG
