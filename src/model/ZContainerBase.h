// The one container of the model: an owning, insertion-ordered sequence of items plus an
// index from each item's key to its position. Every add stores a copy (or an item built in
// place from the same arguments) and makes the container its parent. `Index` is
// ZOrderedIndex<Key> or ZTextIndex (see there).
//
// The list and the index are made with the first item: most messages of a large document are
// small and many are empty, and an empty container then costs two pointers. A container built
// with an arena keeps its list and index there; the items the caller adds are made on the heap
// all the same. The model builder adds items made in the arena.
#pragma once

#include "model/ZModelItem.h"
#include "model/ZOrderedIndex.h"

#include <ZeKL/IContainer.h>

#include <cstdint>
#include <memory>
#include <stdexcept>
#include <type_traits>
#include <utility>

namespace Korvel {

template <typename Key, typename Item, typename Index = ZOrderedIndex<Key>>
class ZContainerBase : public ZModelItem, public virtual IContainer {
    // The reader's one way into the model adds the items it made in the model's arena.
    friend class ZModelBuilder;

public:
    using KeyArg = std::conditional_t<std::is_arithmetic_v<Key>, Key, const Key&>;
    using ItemList = ZModelVector<ZItemPtr<Item>>;

    explicit ZContainerBase(ZModelArena* arena = nullptr) { SetArena(arena); }
    ZContainerBase(const ZContainerBase&) = delete;
    ZContainerBase& operator=(const ZContainerBase&) = delete;
    ~ZContainerBase() override { DestroyBody(std::exchange(m_body, nullptr)); }

    // The container is empty at once; the old items go after the index, in index order.
    void Clear() override { DestroyBody(std::exchange(m_body, nullptr)); }

    uint32_t GetCount() const override {
        return m_body != nullptr ? static_cast<uint32_t>(m_body->items.size()) : 0;
    }

    virtual bool Contains(KeyArg key) const { return FindPosition(key) != nullptr; }

    // True and the index when the key is present; the output is untouched otherwise.
    virtual bool GetIndex(KeyArg key, uint32_t& index) const {
        const uint32_t* found = FindPosition(key);
        if (found == nullptr) {
            return false;
        }
        index = *found;
        return true;
    }

    // Linear: used only by the replace-at-index operations. No two keys share an index.
    virtual bool GetKey(uint32_t index, Key& key) const {
        return m_body != nullptr && m_body->index.KeyOf(index, key);
    }

    // Adds a copy of the prototype under the key; its index, or InvalidIndex when the key is
    // already present (then nothing changes).
    uint32_t AddItem(Key key, const Item& prototype) { return EmplaceItem(key, prototype); }

    // The arena of the list and the index; null when they are on the heap.
    ZModelArena* ListArena() const { return Arena(); }

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
        Body& body = EnsureBody();
        const auto probe = body.index.Search(key);
        if (probe.found) {
            return InvalidIndex;
        }
        if (body.items.size() >= InvalidIndex) {
            throw std::length_error("container is full");
        }
        const auto index = static_cast<uint32_t>(body.items.size());
        body.items.push_back(make());
        body.items.back()->SetParent(this);
        try {
            body.index.InsertAt(probe, key, index);
        } catch (...) {
            body.items.pop_back();
            throw;
        }
        return index;
    }

    // The item at an index, or null when out of range.
    Item* ItemAt(uint32_t index) const {
        return m_body != nullptr && index < m_body->items.size() ? m_body->items[index].get() : nullptr;
    }

    // The position mapped to a key, or null.
    template <typename K>
    const uint32_t* FindPosition(const K& key) const {
        return m_body != nullptr ? m_body->index.Find(key) : nullptr;
    }

    // The item mapped to a key, or null.
    template <typename K>
    Item* FindItem(const K& key) const {
        const uint32_t* found = FindPosition(key);
        return found != nullptr ? ItemAt(*found) : nullptr;
    }

    // Calls `visit(item)` for every item in order (items are never null).
    template <typename Visit>
    void ForEachItem(Visit&& visit) const {
        if (m_body != nullptr) {
            for (const auto& item : m_body->items) {
                visit(*item);
            }
        }
    }

    // Calls `visit(key, position)` for every key of an ordered index, in key order.
    template <typename Visit>
    void ForEachKey(Visit&& visit) const {
        if (m_body != nullptr) {
            for (const auto& entry : m_body->index) {
                visit(entry.first, entry.second);
            }
        }
    }

    // The index, made if there is none yet (it is empty then).
    Index& KeyIndex() { return EnsureBody().index; }
    // Room for `count` items without a reallocation.
    void ReserveItems(std::size_t count) { EnsureBody().items.reserve(count); }

    // Puts a new item at an existing index; the old one is destroyed, the index is not touched.
    void ReplaceItemAt(uint32_t index, ZItemPtr<Item> item) {
        item->SetParent(this);
        m_body->items[index].swap(item);
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
        m_body->index.Erase(key);
        ReplaceItemAt(index, std::move(item));
        return true;
    }

private:
    struct Body {
        explicit Body(ZModelArena* arena) : items(ZModelAllocator<ZItemPtr<Item>>(arena)), index(arena) {}
        ItemList items;
        Index index;
    };

    Body& EnsureBody() {
        if (m_body == nullptr) {
            ZModelArena* arena = ListArena();
            void* block = arena != nullptr ? arena->AllocateItem(sizeof(Body)) : ::operator new(sizeof(Body));
            m_body = ::new (block) Body(arena);
        }
        return *m_body;
    }

    // The index goes first, then the items in order.
    void DestroyBody(Body* body) noexcept {
        if (body == nullptr) {
            return;
        }
        body->index.Clear();
        for (auto& item : body->items) {
            item.reset();
        }
        body->~Body();
        if (ListArena() != nullptr) {
            ListArena()->ReleaseItem(body, sizeof(Body));
        } else {
            ::operator delete(body);
        }
    }

    Body* m_body = nullptr;
};

}  // namespace Korvel
