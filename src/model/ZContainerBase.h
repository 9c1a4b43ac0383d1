// The one container of the model: an owning, insertion-ordered sequence of items plus an
// ordered map from each item's key to its index. Every add stores a copy (or an item built in
// place from the same arguments) and makes the container its parent.
#pragma once

#include "model/ZModelItem.h"

#include <ZeKL/IContainer.h>

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <stdexcept>
#include <type_traits>
#include <utility>
#include <vector>

namespace Korvel {

template <typename Key, typename Item>
class ZContainerBase : public ZModelItem, public virtual IContainer {
public:
    using KeyArg = std::conditional_t<std::is_arithmetic_v<Key>, Key, const Key&>;
    using ItemList = std::vector<std::unique_ptr<Item>>;
    // Transparent comparison: text keys are looked up from zero-terminated text without
    // building a string object first.
    using IndexMap = std::map<Key, uint32_t, std::less<>>;

    ZContainerBase() = default;
    ZContainerBase(const ZContainerBase&) = delete;
    ZContainerBase& operator=(const ZContainerBase&) = delete;
    ~ZContainerBase() override = default;

    // The container is empty at once; the old items go after the map, in index order.
    void Clear() override {
        ItemList items;
        IndexMap index;
        items.swap(m_items);
        index.swap(m_index);
        index.clear();
        for (auto& item : items) {
            item.reset();
        }
    }

    uint32_t GetCount() const override { return static_cast<uint32_t>(m_items.size()); }

    virtual bool Contains(KeyArg key) const { return m_index.find(key) != m_index.end(); }

    // True and the index when the key is present; the output is untouched otherwise.
    virtual bool GetIndex(KeyArg key, uint32_t& index) const {
        const auto found = m_index.find(key);
        if (found == m_index.end()) {
            return false;
        }
        index = found->second;
        return true;
    }

    // Walks the map in key order: linear, used only by the replace-at-index operations.
    virtual bool GetKey(uint32_t index, Key& key) const {
        for (const auto& entry : m_index) {
            if (entry.second == index) {
                key = entry.first;
                return true;
            }
        }
        return false;
    }

    // Adds a copy of the prototype under the key; its index, or InvalidIndex when the key is
    // already present (then nothing changes).
    uint32_t AddItem(Key key, const Item& prototype) { return EmplaceItem(key, prototype); }

protected:
    // Checks the key first, then builds the item from the arguments directly in the container.
    template <typename K, typename... Args>
    uint32_t EmplaceItem(const K& key, Args&&... args) {
        return EmplaceMade(key, [&]() { return std::make_unique<Item>(std::forward<Args>(args)...); });
    }

    // The same with the item built by `make` (returning std::unique_ptr<Item>), called only
    // when the key is new.
    template <typename K, typename Make>
    uint32_t EmplaceMade(const K& key, Make&& make) {
        auto hint = m_index.lower_bound(key);
        if (hint != m_index.end() && !m_index.key_comp()(key, hint->first)) {
            return InvalidIndex;
        }
        if (m_items.size() >= InvalidIndex) {
            throw std::length_error("container is full");
        }
        const auto index = static_cast<uint32_t>(m_items.size());
        m_items.push_back(make());
        m_items.back()->SetParent(this);
        try {
            m_index.emplace_hint(hint, Key(key), index);
        } catch (...) {
            m_items.pop_back();
            throw;
        }
        return index;
    }

    // The item at an index, or null when out of range.
    Item* ItemAt(uint32_t index) const { return index < m_items.size() ? m_items[index].get() : nullptr; }

    // The item mapped to a key, or null.
    template <typename K>
    Item* FindItem(const K& key) const {
        const auto found = m_index.find(key);
        return found != m_index.end() ? ItemAt(found->second) : nullptr;
    }

    // Puts a new item at an existing index; the old one is destroyed, the map is not touched.
    void ReplaceItemAt(uint32_t index, std::unique_ptr<Item> item) {
        item->SetParent(this);
        m_items[index].swap(item);
    }

    // Replacing an entry at an index drops its key from the map and deliberately leaves the
    // new entry unindexed: callers rely on reaching it by index only until the map is rebuilt.
    bool ReplaceUnindexed(uint32_t index, std::unique_ptr<Item> item) {
        if (index >= GetCount()) {
            return false;
        }
        Key key{};
        if (!GetKey(index, key)) {
            return false;
        }
        m_index.erase(key);
        ReplaceItemAt(index, std::move(item));
        return true;
    }

    ItemList m_items;
    IndexMap m_index;
};

}  // namespace Korvel
