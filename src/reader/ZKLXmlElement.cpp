#include "reader/ZKLXmlElement.h"

#include "model/ZNotSupportedItem.h"

#include <utility>

namespace Korvel {

ZKLXmlElement::ZKLXmlElement(std::string name) : ZKLXmlElement(std::move(name), nullptr) {}

ZKLXmlElement::ZKLXmlElement(std::string name, IModelItem* item)
    : ZXmlElement(std::move(name)), item_(item != nullptr ? item : ZNotSupportedItem::GetInstance()) {}

ZKLXmlElement::~ZKLXmlElement() = default;

IModelItem* ZKLXmlElement::GetModelItem() const {
    return item_;
}

void ZKLXmlElement::Reuse(IModelItem* item) {
    ClearValue();
    item_ = item != nullptr ? item : ZNotSupportedItem::GetInstance();
    message_ = nullptr;
    modelMessage_ = nullptr;
    instance_ = nullptr;
    modelInstance_ = nullptr;
    conversion_ = nullptr;
}

}  // namespace Korvel
