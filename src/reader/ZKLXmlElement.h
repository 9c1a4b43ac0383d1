// Element record of the reader: the element's tag and the model item made for it. A record
// without an item refers to the shared not-supported item, never to null.
#pragma once

#include "reader/ZXmlElement.h"

#include <ZeKL/IModelItem.h>

namespace Korvel {

class ZKLXmlElement : public ZXmlElement {
public:
    // An empty record: the element yielded no item.
    explicit ZKLXmlElement(std::string name);
    // A record for the item made for the element (null counts as no item).
    ZKLXmlElement(std::string name, IModelItem* item);
    ~ZKLXmlElement() override;

    // Never null; the shared not-supported item for an empty record. Not owned.
    IModelItem* GetModelItem() const;

private:
    IModelItem* item_;
};

}  // namespace Korvel
