#include "model/ZModelItem.h"

namespace Korvel {

// The block of an item is where its most derived object starts.
void ZItemDeleter::operator()(ZModelItem* item) const noexcept {
    if (item == nullptr) {
        return;
    }
    ZModelArena* arena = item->Arena();
    const bool reuse = arena != nullptr && !arena->TearingDown();
    const std::size_t size = reuse ? item->BlockBytes() : 0;
    void* block = dynamic_cast<void*>(item);
    item->~ZModelItem();
    if (arena == nullptr) {
        ::operator delete(block);
    } else if (size != 0) {
        arena->ReleaseItem(block, size);
    }
}

ZModelItem::~ZModelItem() {
    m_parent = nullptr;
}

void ZModelItem::SetParent(IModelItem* parent) {
    m_parent = parent;
}

bool ZModelItem::HasParent() const {
    return m_parent != nullptr;
}

const IModelItem* ZModelItem::GetParent() const {
    return m_parent;
}

IModelItem* ZModelItem::GetParent() {
    return m_parent;
}

// An item that names itself as its parent is a root too, so the walk cannot loop on it.
const IModelItem* ZModelItem::GetRoot() const {
    const IModelItem* current = this;
    for (;;) {
        const IModelItem* parent = current->GetParent();
        if (parent == nullptr || parent == current) {
            return current;
        }
        current = parent;
    }
}

IModelItem* ZModelItem::GetRoot() {
    if (!HasParent()) {
        return this;
    }
    IModelItem* current = this;
    for (;;) {
        IModelItem* parent = current->GetParent();
        if (parent == nullptr || parent == current) {
            return current;
        }
        current = parent;
    }
}

bool ZModelItem::IsSupported() const {
    return true;
}

}  // namespace Korvel
