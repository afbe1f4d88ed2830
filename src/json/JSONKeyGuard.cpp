#include <zorvodsg/json/JSONKeyGuard.h>

#include <algorithm>

namespace ZorvoDSG {

bool JSONKeyGuard::bFirst(std::string_view key) {
    if (m_hashed.empty()) {
        if (std::find(m_listed.begin(), m_listed.end(), key) != m_listed.end()) {
            return false;
        }
        if (m_listed.size() < kListedKeys) {
            m_listed.push_back(key);
            return true;
        }
        m_hashed.insert(m_listed.begin(), m_listed.end());
    }
    return m_hashed.insert(key).second;
}

}  // namespace ZorvoDSG
