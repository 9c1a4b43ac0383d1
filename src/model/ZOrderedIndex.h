// Maps keys to item positions in key order, for the containers whose order is read: a text
// table is copied in value order, and NRC codes are few. Same operations as ZTextIndex.
#pragma once

#include "model/ZModelArena.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>

namespace Korvel {

template <typename Key>
class ZOrderedIndex {
public:
    // Transparent comparison: text keys are looked up without building a string object.
    using Map = std::map<Key, uint32_t, std::less<>, ZModelAllocator<std::pair<const Key, uint32_t>>>;

    explicit ZOrderedIndex(ZModelArena* arena = nullptr)
        : m_map(std::less<>(), typename Map::allocator_type(arena)) {}

    // Where a key is, or where it would go; valid until the index next changes.
    struct Probe {
        typename Map::const_iterator hint;
        bool found;
    };

    template <typename K>
    Probe Search(const K& key) const {
        const auto hint = m_map.lower_bound(key);
        return Probe{hint, hint != m_map.end() && !m_map.key_comp()(key, hint->first)};
    }
    // Maps a key that a Search just did not find.
    template <typename K>
    void InsertAt(const Probe& probe, const K& key, uint32_t position) {
        m_map.emplace_hint(probe.hint, Key(key), position);
    }

    template <typename K>
    const uint32_t* Find(const K& key) const {
        const auto found = m_map.find(key);
        return found != m_map.end() ? &found->second : nullptr;
    }
    template <typename K>
    bool Insert(const K& key, uint32_t position) {
        const Probe probe = Search(key);
        if (probe.found) {
            return false;
        }
        InsertAt(probe, key, position);
        return true;
    }
    template <typename K>
    void Assign(const K& key, uint32_t position) {
        m_map.insert_or_assign(Key(key), position);
    }
    template <typename K>
    bool Erase(const K& key) {
        const auto found = m_map.find(key);
        if (found == m_map.end()) {
            return false;
        }
        m_map.erase(found);
        return true;
    }
    void Clear() { m_map.clear(); }
    void Swap(ZOrderedIndex& other) noexcept { m_map.swap(other.m_map); }

    // Walks the map: linear.
    bool KeyOf(uint32_t position, Key& key) const {
        for (const auto& entry : m_map) {
            if (entry.second == position) {
                key = entry.first;
                return true;
            }
        }
        return false;
    }
    std::size_t Size() const { return m_map.size(); }

    // Entries in key order.
    typename Map::const_iterator begin() const { return m_map.begin(); }
    typename Map::const_iterator end() const { return m_map.end(); }

private:
    Map m_map;
};

}  // namespace Korvel
