#include "lint/ZItemPositions.h"

namespace Korvel {

bool ZItemPositions::Record(const IModelItem* item, XmlPosition position) {
    return item != nullptr && positions_.emplace(item, position).second;
}

XmlPosition ZItemPositions::Find(const IModelItem* item) const {
    for (const IModelItem* at = item; at != nullptr;) {
        const auto found = positions_.find(at);
        if (found != positions_.end()) {
            return found->second;
        }
        const IModelItem* parent = at->GetParent();
        at = parent != at ? parent : nullptr;
    }
    return XmlPosition{};
}

}  // namespace Korvel
