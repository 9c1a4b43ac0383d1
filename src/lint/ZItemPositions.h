// Where the element of each item of a model starts, recorded during the read that made them.
#pragma once

#include "reader/IXmlElementObserver.h"

#include <ZeKL/IModelItem.h>

#include <unordered_map>

namespace Korvel {

class ZItemPositions {
public:
    // Keeps the first position given for an item; true when this was the first.
    bool Record(const IModelItem* item, XmlPosition position);
    // The item's position, else that of the nearest item holding it that has one (a negative
    // response the reader added to its instance has the instance's); 0, 0 when none has one.
    XmlPosition Find(const IModelItem* item) const;

private:
    std::unordered_map<const IModelItem*, XmlPosition> positions_;
};

}  // namespace Korvel
