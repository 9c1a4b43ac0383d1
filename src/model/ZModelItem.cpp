#include "model/ZModelItem.h"

namespace Korvel {

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
