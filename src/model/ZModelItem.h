// Common implementation base of every model item: the parent back pointer, the root walk, the
// arena the item lives in, and the one way items are made and destroyed.
#pragma once

#include "model/ZModelArena.h"

#include <ZeKL/IModelItem.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>
#include <utility>

namespace Korvel {

// What an item is, so that code holding a ZModelItem reaches its own type without a cast
// through the virtual base.
enum class ZItemKind : uint8_t {
    Other,
    Ecu,
    NrcContainer,
    NrcItem,
    ConversionContainer,
    Conversion,
    TextTable,
    TextTableElement,
    InstanceContainer,
    Instance,
    Request,
    PosResponse,
    NegResponse,
    Param,
    NotSupported,
};

class ZModelItem;

// Destroys an item made by MakeItem and gives its block back to the heap or to its arena.
struct ZItemDeleter {
    void operator()(ZModelItem* item) const noexcept;
};

// The owning pointer of the items a model holds.
template <typename T>
using ZItemPtr = std::unique_ptr<T, ZItemDeleter>;

class ZModelItem : public virtual IModelItem {
public:
    ZModelItem() = default;
    explicit ZModelItem(IModelItem* parent) : m_parent(parent) {}
    // A copy starts detached and on the heap: the holder that takes it sets the parent.
    ZModelItem(const ZModelItem& /*other*/) : IModelItem(), m_parent(nullptr) {}
    // Assignment never moves an item to another holder or another memory.
    ZModelItem& operator=(const ZModelItem& /*other*/) { return *this; }
    ~ZModelItem() override;

    // Stores the pointer as given (null allowed); neither the old nor the new parent is told.
    virtual void SetParent(IModelItem* parent);

    virtual ZItemKind Kind() const { return ZItemKind::Other; }
    // The item as its own type T when it is one (T::IsKind says which kinds are), else null.
    template <typename T>
    T* As() {
        return T::IsKind(Kind()) ? static_cast<T*>(this) : nullptr;
    }

    // The arena the item lives in; null for an item on the heap. A container that is a member
    // of another item (the ECU's, a conversion's table) lives in its holder's block; its arena
    // is the one its list and index are kept in.
    ZModelArena* Arena() const { return m_arena; }
    // Bytes the item's block is known to hold at least (itself and texts still behind it), so
    // that an arena can reuse the block once the item is gone; 0 when unknown.
    virtual std::size_t BlockBytes() const { return 0; }

    bool HasParent() const override;
    const IModelItem* GetParent() const override;
    IModelItem* GetParent() override;
    const IModelItem* GetRoot() const override;
    IModelItem* GetRoot() override;
    bool IsSupported() const override;

protected:
    // For containers made with an arena for their lists; PlaceItem sets the same for an item it
    // places.
    void SetArena(ZModelArena* arena) { m_arena = arena; }

private:
    template <typename T, typename Construct>
    friend ZItemPtr<T> PlaceItem(ZModelArena* arena, std::size_t size, Construct&& construct);

    IModelItem* m_parent = nullptr;
    ZModelArena* m_arena = nullptr;
};

// The one way the model makes the items it holds: a block of `size` bytes in `arena` (null:
// on the heap), the item built at its start by `construct(block)`. Throws what allocation or
// the constructor throws, and then the block is given back.
template <typename T, typename Construct>
ZItemPtr<T> PlaceItem(ZModelArena* arena, std::size_t size, Construct&& construct) {
    void* block = arena != nullptr ? arena->AllocateItem(size) : ::operator new(size);
    try {
        T* item = construct(block);
        static_cast<ZModelItem*>(item)->m_arena = arena;
        return ZItemPtr<T>(item);
    } catch (...) {
        if (arena != nullptr) {
            arena->ReleaseItem(block, size);
        } else {
            ::operator delete(block);
        }
        throw;
    }
}

template <typename T, typename... Args>
ZItemPtr<T> MakeItem(ZModelArena* arena, Args&&... args) {
    return PlaceItem<T>(arena, sizeof(T),
                        [&](void* block) { return ::new (block) T(std::forward<Args>(args)...); });
}

// An item with `textBytes` bytes behind it for its texts, so that item and texts take one
// block; its constructor receives a pointer to those bytes as its first argument.
template <typename T, typename... Args>
ZItemPtr<T> MakeItemWithTexts(ZModelArena* arena, std::size_t textBytes, Args&&... args) {
    return PlaceItem<T>(arena, sizeof(T) + textBytes, [&](void* block) {
        return ::new (block) T(static_cast<char*>(block) + sizeof(T), std::forward<Args>(args)...);
    });
}

}  // namespace Korvel
