#pragma once
// Attributes by name, iterated in the order they were added (the file's own order), so that maps,
// output and logs are the same at every run. Lookups are hashed.

#include <stdexcept>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include <zorvodsg/values/NcVariant.h>

namespace ZorvoDSG::System {

class AttributeMap {
public:
    using value_type = std::pair<std::string, NcVariant>;
    using const_iterator = std::vector<value_type>::const_iterator;

    const_iterator begin() const { return m_items.begin(); }
    const_iterator end() const { return m_items.end(); }
    size_t size() const { return m_items.size(); }
    bool empty() const { return m_items.empty(); }

    bool contains(const std::string& name) const { return m_index.count(name) != 0; }
    size_t count(const std::string& name) const { return m_index.count(name); }
    const_iterator find(const std::string& name) const {
        const auto it = m_index.find(name);
        return it == m_index.end() ? end() : begin() + static_cast<std::ptrdiff_t>(it->second);
    }
    // The value, or null when absent.
    const NcVariant* get(const std::string& name) const {
        const auto it = m_index.find(name);
        return it == m_index.end() ? nullptr : &m_items[it->second].second;
    }
    const NcVariant& at(const std::string& name) const {
        const auto it = m_index.find(name);
        if (it == m_index.end()) {
            throw std::out_of_range("attribute not present");
        }
        return m_items[it->second].second;
    }
    // Adds at the end; an existing name keeps its value and place. True when added.
    bool insert(const std::string& name, NcVariant value) {
        if (contains(name)) {
            return false;
        }
        m_index.emplace(name, m_items.size());
        m_items.emplace_back(name, std::move(value));
        return true;
    }
    // Replaces the value in place, or adds at the end. True when added.
    bool insert_or_assign(const std::string& name, NcVariant value) {
        const auto it = m_index.find(name);
        if (it != m_index.end()) {
            m_items[it->second].second = std::move(value);
            return false;
        }
        m_index.emplace(name, m_items.size());
        m_items.emplace_back(name, std::move(value));
        return true;
    }
    bool erase(const std::string& name) {
        const auto it = m_index.find(name);
        if (it == m_index.end()) {
            return false;
        }
        const size_t position = it->second;
        m_items.erase(m_items.begin() + static_cast<std::ptrdiff_t>(position));
        m_index.erase(it);
        for (auto& [key, index] : m_index) {
            if (index > position) {
                --index;
            }
        }
        return true;
    }

private:
    std::vector<value_type> m_items;
    std::unordered_map<std::string, size_t> m_index;
};

}  // namespace ZorvoDSG::System
