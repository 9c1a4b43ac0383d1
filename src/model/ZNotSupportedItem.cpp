#include "model/ZNotSupportedItem.h"

#include <ZeKL/IConstModelItemVisitor.h>

#include <new>

namespace Korvel {

ZNotSupportedItem* ZNotSupportedItem::GetInstance() {
    // Statically allocated and deliberately never destroyed: element records may still refer
    // to it while the process shuts down.
    alignas(ZNotSupportedItem) static unsigned char storage[sizeof(ZNotSupportedItem)];
    static ZNotSupportedItem* const instance = new (storage) ZNotSupportedItem();
    return instance;
}

// The shared item is detached for good: no element record can make it part of a model.
void ZNotSupportedItem::SetParent(IModelItem* /*parent*/) {}

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
