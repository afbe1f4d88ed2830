#pragma once
// Attributes by name, iterated in the order they were added (the file's own order), so that maps,
// output and logs are the same at every run. Lookups are hashed.

#include <cstddef>
#include <initializer_list>
#include <iterator>
#include <ranges>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <unordered_map>
#include <utility>
#include <vector>

#include <zorvodsg/values/NcVariant.h>

namespace ZorvoDSG::System {

// The members are those of the standard associative containers, with their meaning: insert keeps
// an existing value, insert_or_assign replaces it, erase returns the count removed. Iteration is
// read-only, since the names index the map.
class AttributeMap {
public:
    using key_type = std::string;
    using mapped_type = NcVariant;
    using value_type = std::pair<std::string, NcVariant>;
    using size_type = std::size_t;
    using difference_type = std::ptrdiff_t;
    using reference = const value_type&;
    using const_reference = const value_type&;
    using const_iterator = std::vector<value_type>::const_iterator;
    using iterator = const_iterator;

    AttributeMap() = default;
    // Later duplicates of a name are ignored, as insert ignores them.
    AttributeMap(std::initializer_list<value_type> items) : AttributeMap(items.begin(), items.end()) {}
    template <std::input_iterator It, std::sentinel_for<It> End>
    AttributeMap(It first, End last) {
        insert(std::move(first), std::move(last));
    }
    // Any range of (name, value) pairs, e.g. a std::map<std::string, NcVariant>.
    template <std::ranges::input_range Range>
        requires(!std::is_same_v<std::remove_cvref_t<Range>, AttributeMap> &&
                 std::is_constructible_v<value_type, std::ranges::range_reference_t<Range>>)
    explicit AttributeMap(Range&& range) : AttributeMap(std::ranges::begin(range), std::ranges::end(range)) {}

    const_iterator begin() const noexcept { return m_items.begin(); }
    const_iterator end() const noexcept { return m_items.end(); }
    const_iterator cbegin() const noexcept { return m_items.begin(); }
    const_iterator cend() const noexcept { return m_items.end(); }
    size_type size() const noexcept { return m_items.size(); }
    bool empty() const noexcept { return m_items.empty(); }

    bool contains(const std::string& name) const { return m_index.count(name) != 0; }
    size_type count(const std::string& name) const { return m_index.count(name); }
    const_iterator find(const std::string& name) const {
        const auto it = m_index.find(name);
        return it == m_index.end() ? end() : begin() + static_cast<difference_type>(it->second);
    }
    // The value, or null when absent.
    const NcVariant* get(const std::string& name) const {
        const auto it = m_index.find(name);
        return it == m_index.end() ? nullptr : &m_items[it->second].second;
    }
    // std::out_of_range when absent.
    const NcVariant& at(const std::string& name) const {
        const auto it = m_index.find(name);
        if (it == m_index.end()) {
            throw std::out_of_range("attribute not present");
        }
        return m_items[it->second].second;
    }

    // Adds at the end; an existing name keeps its value and place (second: whether it was added).
    std::pair<const_iterator, bool> insert(value_type item) {
        if (const auto it = find(item.first); it != end()) {
            return {it, false};
        }
        return {Append(std::move(item.first), std::move(item.second)), true};
    }
    template <std::input_iterator It, std::sentinel_for<It> End>
    void insert(It first, End last) {
        for (; first != last; ++first) {
            insert(value_type(*first));
        }
    }
    void insert(std::initializer_list<value_type> items) { insert(items.begin(), items.end()); }
    // Replaces the value in place, or adds at the end (second: whether it was added).
    std::pair<const_iterator, bool> insert_or_assign(const std::string& name, NcVariant value) {
        const auto it = m_index.find(name);
        if (it != m_index.end()) {
            m_items[it->second].second = std::move(value);
            return {begin() + static_cast<difference_type>(it->second), false};
        }
        return {Append(name, std::move(value)), true};
    }
    // Removes the attribute; the others keep their order. Returns the count removed (0 or 1).
    size_type erase(const std::string& name) {
        const auto it = m_index.find(name);
        if (it == m_index.end()) {
            return 0;
        }
        const size_type position = it->second;
        m_items.erase(m_items.begin() + static_cast<difference_type>(position));
        m_index.erase(it);
        for (auto& [key, index] : m_index) {
            if (index > position) {
                --index;
            }
        }
        return 1;
    }
    void clear() noexcept {
        m_items.clear();
        m_index.clear();
    }

    // Same names and values in the same order.
    bool operator==(const AttributeMap& other) const;

private:
    const_iterator Append(std::string name, NcVariant value) {
        m_items.emplace_back(std::move(name), std::move(value));
        m_index.emplace(m_items.back().first, m_items.size() - 1);
        return end() - 1;
    }

    std::vector<value_type> m_items;
    std::unordered_map<std::string, size_type> m_index;
};

}  // namespace ZorvoDSG::System
