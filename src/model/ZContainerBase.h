// The one container of the model: an owning, insertion-ordered sequence of items plus an
// index from each item's key to its position. Every add stores a copy (or an item built in
// place from the same arguments) and makes the container its parent. `Index` is
// ZOrderedIndex<Key> or ZTextIndex (see there).
//
// A container built with an arena keeps its list and index there; the items the caller adds
// are made on the heap all the same. The model builder adds items made in the arena.
#pragma once

#include "model/ZModelItem.h"
#include "model/ZOrderedIndex.h"

#include <ZeKL/IContainer.h>

#include <cstdint>
#include <memory>
#include <stdexcept>
#include <type_traits>
#include <utility>
#include <vector>

namespace Korvel {

template <typename Key, typename Item, typename Index = ZOrderedIndex<Key>>
class ZContainerBase : public ZModelItem, public virtual IContainer {
    // The reader's one way into the model adds the items it made in the model's arena.
    friend class ZModelBuilder;

public:
    using KeyArg = std::conditional_t<std::is_arithmetic_v<Key>, Key, const Key&>;
    using ItemList = ZModelVector<ZItemPtr<Item>>;

    explicit ZContainerBase(ZModelArena* arena = nullptr)
        : m_items(ZModelAllocator<ZItemPtr<Item>>(arena)), m_index(arena) {}
    ZContainerBase(const ZContainerBase&) = delete;
    ZContainerBase& operator=(const ZContainerBase&) = delete;
    ~ZContainerBase() override = default;

    // The container is empty at once; the old items go after the index, in index order.
    void Clear() override {
        ItemList items(m_items.get_allocator());
        Index index(ListArena());
        items.swap(m_items);
        index.Swap(m_index);
        index.Clear();
        for (auto& item : items) {
            item.reset();
        }
    }

    uint32_t GetCount() const override { return static_cast<uint32_t>(m_items.size()); }

    virtual bool Contains(KeyArg key) const { return m_index.Find(key) != nullptr; }

    // True and the index when the key is present; the output is untouched otherwise.
    virtual bool GetIndex(KeyArg key, uint32_t& index) const {
        const uint32_t* found = m_index.Find(key);
        if (found == nullptr) {
            return false;
        }
        index = *found;
        return true;
    }

    // Linear: used only by the replace-at-index operations. No two keys share an index.
    virtual bool GetKey(uint32_t index, Key& key) const { return m_index.KeyOf(index, key); }

    // Adds a copy of the prototype under the key; its index, or InvalidIndex when the key is
    // already present (then nothing changes).
    uint32_t AddItem(Key key, const Item& prototype) { return EmplaceItem(key, prototype); }

    // The arena of the list and the index; null when they are on the heap.
    ZModelArena* ListArena() const { return m_items.get_allocator().Arena(); }

protected:
    // Checks the key first, then builds the item on the heap from the arguments.
    template <typename K, typename... Args>
    uint32_t EmplaceItem(const K& key, Args&&... args) {
        return EmplaceMade(key, [&]() { return MakeItem<Item>(nullptr, std::forward<Args>(args)...); });
    }

    // The same with the item built by `make` (returning ZItemPtr<Item>), called only when the
    // key is new.
    template <typename K, typename Make>
    uint32_t EmplaceMade(const K& key, Make&& make) {
        const auto probe = m_index.Search(key);
        if (probe.found) {
            return InvalidIndex;
        }
        if (m_items.size() >= InvalidIndex) {
            throw std::length_error("container is full");
        }
        const auto index = static_cast<uint32_t>(m_items.size());
        m_items.push_back(make());
        m_items.back()->SetParent(this);
        try {
            m_index.InsertAt(probe, key, index);
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
        const uint32_t* found = m_index.Find(key);
        return found != nullptr ? ItemAt(*found) : nullptr;
    }

    // Puts a new item at an existing index; the old one is destroyed, the index is not touched.
    void ReplaceItemAt(uint32_t index, ZItemPtr<Item> item) {
        item->SetParent(this);
        m_items[index].swap(item);
    }

    // Replacing an entry at an index drops its key from the index and deliberately leaves the
    // new entry unindexed: callers rely on reaching it by index only until the index is rebuilt.
    bool ReplaceUnindexed(uint32_t index, ZItemPtr<Item> item) {
        if (index >= GetCount()) {
            return false;
        }
        Key key{};
        if (!GetKey(index, key)) {
            return false;
        }
        m_index.Erase(key);
        ReplaceItemAt(index, std::move(item));
        return true;
    }

    ItemList m_items;
    Index m_index;
};

}  // namespace Korvel
