// Element record of the reader: the element's tag and the model item made for it. A record
// without an item refers to the shared not-supported item, never to null.
#pragma once

#include "reader/ZXmlElement.h"

#include <ZeKL/IModelItem.h>

namespace Korvel {

class IMessage;

class ZKLXmlElement : public ZXmlElement {
public:
    // An empty record: the element yielded no item.
    explicit ZKLXmlElement(std::string name);
    // A record for the item made for the element (null counts as no item).
    ZKLXmlElement(std::string name, IModelItem* item);
    ~ZKLXmlElement() override;

    // Never null; the shared not-supported item for an empty record. Not owned.
    IModelItem* GetModelItem() const;

    // The item as a message, for records of message elements: the parameters inside reach
    // their message without a cast through the virtual base. Null for other records.
    IMessage* GetMessage() const { return message_; }
    void SetMessage(IMessage* message) { message_ = message; }
    // Makes the record stand for a new element of the same name, as a fresh record would.
    void Reuse(IModelItem* item);

private:
    IModelItem* item_;
    IMessage* message_ = nullptr;
};

}  // namespace Korvel
