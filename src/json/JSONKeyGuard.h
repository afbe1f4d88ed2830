#pragma once
// Remembers the keys written into one JSON object, so that a key given twice (a variable listed twice,
// say) is written once. The keys are viewed, not copied: they must outlive the guard.

#include <string_view>
#include <unordered_set>
#include <vector>

namespace ZorvoDSG {

class JSONKeyGuard {
public:
    // True the first time `key` is offered, false afterwards.
    bool bFirst(std::string_view key);

private:
    // Objects have few keys: a short list is searched, a long one hashed.
    static constexpr size_t kListedKeys = 16;
    std::vector<std::string_view> m_listed;
    std::unordered_set<std::string_view> m_hashed;
};

}  // namespace ZorvoDSG
