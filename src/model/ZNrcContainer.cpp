#include "model/ZNrcContainer.h"

#include <ZeKL/IConstModelItemVisitor.h>

namespace Korvel {

ZNrcContainer::ZNrcContainer(ZModelArena* arena) : ZContainerBase(arena) {}

ZNrcContainer::ZNrcContainer(const ZNrcContainer& other)
    : IModelItem(), IContainer(), ZContainerBase(), INrcContainer() {
    Assign(other);
}

ZNrcContainer::~ZNrcContainer() = default;

void ZNrcContainer::Assign(const INrcContainer& other) {
    Clear();
    const uint32_t count = other.GetCount();
    for (uint32_t index = 0; index < count; ++index) {
        if (const INrcItem* item = other.GetNrc(index)) {
            AddNrc(*item);
        }
    }
}

bool ZNrcContainer::Contains(uint8_t code) const {
    return ZContainerBase::Contains(code);
}

uint32_t ZNrcContainer::AddNrc(const INrcItem& item) {
    return EmplaceItem(item.GetCode(), item);
}

uint32_t ZNrcContainer::AddNrc(uint8_t code, const char* text) {
    return EmplaceItem(code, code, text);
}

// The new code is deliberately left out of the map: the entry is reachable by index only, and a
// later AddNrc with its code succeeds. Documents written from such tables rely on it.
bool ZNrcContainer::SetNrc(uint32_t index, const INrcItem& item) {
    if (index >= GetCount()) {
        return false;
    }
    return ReplaceUnindexed(index, MakeItem<ZNrcItem>(nullptr, item));
}

bool ZNrcContainer::SetNrc(uint32_t index, uint8_t code, const char* text) {
    if (index >= GetCount()) {
        return false;
    }
    return ReplaceUnindexed(index, MakeItem<ZNrcItem>(nullptr, code, text));
}

const INrcItem* ZNrcContainer::GetNrc(uint32_t index) const {
    return ItemAt(index);
}

INrcItem* ZNrcContainer::GetNrc(uint32_t index) {
    return ItemAt(index);
}

const INrcItem* ZNrcContainer::GetNrc(uint8_t code) const {
    return FindItem(code);
}

INrcItem* ZNrcContainer::GetNrc(uint8_t code) {
    return FindItem(code);
}

void ZNrcContainer::Accept(IConstModelItemVisitor& visitor) const {
    visitor.VisitNrcContainer(*this);
}

void ZNrcContainer::Accept(IConstModelItemVisitor& visitor) {
    visitor.VisitNrcContainer(*this);
}

}  // namespace Korvel
