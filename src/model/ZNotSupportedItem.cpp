#include "model/ZNotSupportedItem.h"

#include <ZeKL/IConstModelItemVisitor.h>

namespace Korvel {

ZNotSupportedItem* ZNotSupportedItem::GetInstance() {
    // Deliberately never destroyed: element records may still refer to it while the process
    // shuts down.
    static ZNotSupportedItem* const instance = new ZNotSupportedItem();
    return instance;
}

bool ZNotSupportedItem::HasParent() const {
    return false;
}

const IModelItem* ZNotSupportedItem::GetParent() const {
    return nullptr;
}

IModelItem* ZNotSupportedItem::GetParent() {
    return nullptr;
}

const IModelItem* ZNotSupportedItem::GetRoot() const {
    return this;
}

IModelItem* ZNotSupportedItem::GetRoot() {
    return this;
}

bool ZNotSupportedItem::IsSupported() const {
    return false;
}

void ZNotSupportedItem::Accept(IConstModelItemVisitor& visitor) const {
    visitor.VisitNotSupported(*this);
}

void ZNotSupportedItem::Accept(IConstModelItemVisitor& visitor) {
    visitor.VisitNotSupported(*this);
}

}  // namespace Korvel
