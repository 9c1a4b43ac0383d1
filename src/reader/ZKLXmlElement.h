// Element record of the reader: the element's tag and the model item made for it. A record
// without an item refers to the shared not-supported item, never to null.
#pragma once

#include "reader/ZXmlElement.h"

#include "model/ZModelItem.h"

namespace Korvel {

class ZKLXmlElement : public ZXmlElement {
public:
    // An empty record: the element yielded no item.
    explicit ZKLXmlElement(std::string name);
    // A record for the item made for the element (null counts as no item).
    ZKLXmlElement(std::string name, ZModelItem* item);
    ~ZKLXmlElement() override;

    // Never null; the shared not-supported item for an empty record. Not owned.
    ZModelItem* GetModelItem() const;
    // Makes the record stand for a new element of the same name, as a fresh record would.
    void Reuse(ZModelItem* item);

private:
    ZModelItem* item_;
};

}  // namespace Korvel
