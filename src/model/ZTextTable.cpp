#include "model/ZTextTable.h"

#include "model/TextOrEmpty.h"

#include <ZeKL/IConstModelItemVisitor.h>

#include <algorithm>
#include <cstring>
#include <vector>

namespace Korvel {

ZTextTable::ZTextTable(ZModelArena* arena) : ZContainerBase(arena) {}

ZTextTable::ZTextTable(const ZTextTable& other) : IModelItem(), IContainer(), ZContainerBase(), ITextTable() {
    Assign(other);
}

ZTextTable::~ZTextTable() = default;

// Sorted copies are deliberate: conversions in an ECU always hold their table in value order,
// and documents written from them list the entries so.
void ZTextTable::Assign(const ITextTable& other) {
    if (&other == static_cast<const ITextTable*>(this)) {
        return;
    }
    Clear();
    if (const auto* source = dynamic_cast<const ZTextTable*>(&other)) {
        source->ForEachKey([&](const std::string& /*value*/, uint32_t position) {
            if (const ZTextTableElement* element = source->ItemAt(position)) {
                AddElement(*element);
            }
        });
        return;
    }
    // Another implementation shows no map: its keyed entries are those its own value lookup
    // finds, taken in value order.
    std::vector<const ITextTableElement*> keyed;
    const uint32_t count = other.GetCount();
    for (uint32_t index = 0; index < count; ++index) {
        const ITextTableElement* element = other.GetElement(index);
        if (element != nullptr && other.GetElement(element->GetValue()) == element) {
            keyed.push_back(element);
        }
    }
    std::stable_sort(keyed.begin(), keyed.end(), [](const ITextTableElement* a, const ITextTableElement* b) {
        return std::strcmp(a->GetValue(), b->GetValue()) < 0;
    });
    for (const ITextTableElement* element : keyed) {
        AddElement(*element);
    }
}

bool ZTextTable::CopyElement(uint32_t index, ZTextTableElement& out) const {
    const ZTextTableElement* element = ItemAt(index);
    if (element == nullptr) {
        return false;
    }
    out.Assign(*element);
    return true;
}

bool ZTextTable::Contains(const char* value) const {
    return FindPosition(KeyText(value)) != nullptr;
}

void ZTextTable::AddElements(const ITextTable& other) {
    const uint32_t count = other.GetCount();
    for (uint32_t index = 0; index < count; ++index) {
        if (const ITextTableElement* element = other.GetElement(index)) {
            AddElement(*element);
        }
    }
}

uint32_t ZTextTable::AddElement(const ITextTableElement& element) {
    return EmplaceItem(KeyText(element.GetValue()), element);
}

uint32_t ZTextTable::AddElement(const char* value, const char* text) {
    value = TextOrEmpty(value);
    return EmplaceItem(KeyText(value), value, text);
}

// The new value is deliberately not entered into the map (as with the NRC table): the entry is
// reachable by index only, and a later AddElement with its value succeeds.
bool ZTextTable::SetElement(uint32_t index, const ITextTableElement& element) {
    if (index >= GetCount()) {
        return false;
    }
    return ReplaceUnindexed(index, MakeItem<ZTextTableElement>(nullptr, element));
}

bool ZTextTable::SetElement(uint32_t index, const char* value, const char* text) {
    if (index >= GetCount()) {
        return false;
    }
    return ReplaceUnindexed(index, MakeItem<ZTextTableElement>(nullptr, value, text));
}

const ITextTableElement* ZTextTable::GetElement(const char* value) const {
    return FindItem(KeyText(value));
}

ITextTableElement* ZTextTable::GetElement(const char* value) {
    return FindItem(KeyText(value));
}

const ITextTableElement* ZTextTable::GetElement(uint32_t index) const {
    return ItemAt(index);
}

ITextTableElement* ZTextTable::GetElement(uint32_t index) {
    return ItemAt(index);
}

void ZTextTable::Accept(IConstModelItemVisitor& visitor) const {
    visitor.VisitTextTable(*this);
}

void ZTextTable::Accept(IConstModelItemVisitor& visitor) {
    visitor.VisitTextTable(*this);
}

}  // namespace Korvel
