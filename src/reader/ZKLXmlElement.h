// Element record of the reader: the element's tag and the model item made for it. A record
// without an item refers to the shared not-supported item, never to null.
#pragma once

#include "reader/ZXmlElement.h"

#include <ZeKL/IModelItem.h>

namespace Korvel {

class IConversion;
class IInstance;
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

    // The item as a message, instance or conversion, for records of those elements: the
    // elements inside reach it without a cast through the virtual base. Null for other records.
    IMessage* GetMessage() const { return message_; }
    void SetMessage(IMessage* message) { message_ = message; }
    IInstance* GetInstance() const { return instance_; }
    void SetInstance(IInstance* instance) { instance_ = instance; }
    IConversion* GetConversion() const { return conversion_; }
    void SetConversion(IConversion* conversion) { conversion_ = conversion; }
    // Makes the record stand for a new element of the same name, as a fresh record would.
    void Reuse(IModelItem* item);

private:
    IModelItem* item_;
    IMessage* message_ = nullptr;
    IInstance* instance_ = nullptr;
    IConversion* conversion_ = nullptr;
};

}  // namespace Korvel
