// Element record of the reader: the element's tag and the model item made for it. A record
// without an item refers to the shared not-supported item, never to null.
#pragma once

#include "reader/ZXmlElement.h"

#include <ZeKL/IModelItem.h>

namespace Korvel {

class IConversion;
class IInstance;
class IMessage;
class ZInstance;
class ZMessage;

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
    // A message or an instance of this library's model is also kept with its own type (null
    // for other implementations), for the reader's direct paths into the model.
    IMessage* GetMessage() const { return message_; }
    ZMessage* GetModelMessage() const { return modelMessage_; }
    void SetMessage(IMessage* message, ZMessage* model) {
        message_ = message;
        modelMessage_ = model;
    }
    IInstance* GetInstance() const { return instance_; }
    ZInstance* GetModelInstance() const { return modelInstance_; }
    void SetInstance(IInstance* instance, ZInstance* model) {
        instance_ = instance;
        modelInstance_ = model;
    }
    IConversion* GetConversion() const { return conversion_; }
    void SetConversion(IConversion* conversion) { conversion_ = conversion; }
    // Makes the record stand for a new element of the same name, as a fresh record would.
    void Reuse(IModelItem* item);

private:
    IModelItem* item_;
    IMessage* message_ = nullptr;
    ZMessage* modelMessage_ = nullptr;
    IInstance* instance_ = nullptr;
    ZInstance* modelInstance_ = nullptr;
    IConversion* conversion_ = nullptr;
};

}  // namespace Korvel
