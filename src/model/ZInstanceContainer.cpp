#include "model/ZInstanceContainer.h"

#include "model/TextOrEmpty.h"

#include <ZeKL/IConstModelItemVisitor.h>

namespace Korvel {

ZInstanceContainer::ZInstanceContainer(ZModelArena* arena) : ZContainerBase(arena) {}

ZInstanceContainer::ZInstanceContainer(const ZInstanceContainer& other)
    : IModelItem(), IContainer(), ZContainerBase(), IInstanceContainer() {
    Assign(other);
}

ZInstanceContainer::~ZInstanceContainer() = default;

void ZInstanceContainer::Assign(const IInstanceContainer& other) {
    if (&other == static_cast<const IInstanceContainer*>(this)) {
        return;
    }
    Clear();
    const uint32_t count = other.GetCount();
    for (uint32_t index = 0; index < count; ++index) {
        if (const IInstance* instance = other.GetInstance(index)) {
            AddInstance(*instance);
        }
    }
}

bool ZInstanceContainer::Contains(const char* id) const {
    return FindPosition(KeyText(id)) != nullptr;
}

const IInstance* ZInstanceContainer::GetInstance(const char* id) const {
    return FindItem(KeyText(id));
}

IInstance* ZInstanceContainer::GetInstance(const char* id) {
    return FindItem(KeyText(id));
}

const IInstance* ZInstanceContainer::GetInstance(uint32_t index) const {
    return ItemAt(index);
}

ZInstance* ZInstanceContainer::GetInstance(uint32_t index) {
    return ItemAt(index);
}

uint32_t ZInstanceContainer::AddInstance(const IInstance& instance) {
    return EmplaceItem(KeyText(instance.GetId()), instance);
}

uint32_t ZInstanceContainer::AddInstance(const char* id) {
    id = TextOrEmpty(id);
    return EmplaceItem(KeyText(id), id);
}

uint32_t ZInstanceContainer::AddInstance(const char* id, const IRequest* request,
                                         const IPosResponse* posResponse, const INegResponse* negResponse) {
    id = TextOrEmpty(id);
    return EmplaceItem(KeyText(id), id, request, posResponse, negResponse);
}

void ZInstanceContainer::Accept(IConstModelItemVisitor& visitor) const {
    visitor.VisitInstanceContainer(*this);
}

void ZInstanceContainer::Accept(IConstModelItemVisitor& visitor) {
    visitor.VisitInstanceContainer(*this);
}

}  // namespace Korvel
