#include "model/ZConversionContainer.h"

#include "model/TextOrEmpty.h"

#include <ZeKL/IConstModelItemVisitor.h>

namespace Korvel {

ZConversionContainer::ZConversionContainer(ZModelArena* arena) : ZContainerBase(arena) {}

ZConversionContainer::ZConversionContainer(const ZConversionContainer& other)
    : IModelItem(), IContainer(), ZContainerBase(), IConversionContainer() {
    Assign(other);
}

ZConversionContainer::~ZConversionContainer() = default;

void ZConversionContainer::Assign(const IConversionContainer& other) {
    if (&other == static_cast<const IConversionContainer*>(this)) {
        return;
    }
    Clear();
    const uint32_t count = other.GetCount();
    for (uint32_t index = 0; index < count; ++index) {
        if (const IConversion* conversion = other.GetConversion(index)) {
            AddConversion(*conversion);
        }
    }
}

const IConversion* ZConversionContainer::FindConversion(const char* id) const {
    return FindItem(KeyText(id));
}

bool ZConversionContainer::Contains(const char* id) const {
    return FindPosition(KeyText(id)) != nullptr;
}

const IConversion* ZConversionContainer::GetConversion(uint32_t index) const {
    return ItemAt(index);
}

IConversion* ZConversionContainer::GetConversion(uint32_t index) {
    return ItemAt(index);
}

IConversion* ZConversionContainer::GetConversion(const char* id) {
    return FindItem(KeyText(id));
}

uint32_t ZConversionContainer::AddConversion(const IConversion& conversion) {
    if (const auto* same = dynamic_cast<const ZConversion*>(&conversion)) {
        return EmplaceItem(KeyText(same->GetId()), *same);
    }
    return EmplaceItem(KeyText(conversion.GetId()), conversion);
}

uint32_t ZConversionContainer::AddConversion(const char* id, uint32_t type, double factor, double offset) {
    id = TextOrEmpty(id);
    return EmplaceItem(KeyText(id), id, type, factor, offset);
}

// Built as a temporary and copied, as every add does: the copy sorts the table a second time,
// which matters only for entries whose value was changed after they were added.
uint32_t ZConversionContainer::AddConversion(const char* id, uint32_t type, const ITextTable& table) {
    id = TextOrEmpty(id);
    if (Contains(id)) {
        return InvalidIndex;
    }
    const ZConversion prototype(id, type, table);
    return EmplaceItem(KeyText(prototype.GetId()), prototype);
}

void ZConversionContainer::Accept(IConstModelItemVisitor& visitor) const {
    visitor.VisitConversionContainer(*this);
}

void ZConversionContainer::Accept(IConstModelItemVisitor& visitor) {
    visitor.VisitConversionContainer(*this);
}

}  // namespace Korvel
