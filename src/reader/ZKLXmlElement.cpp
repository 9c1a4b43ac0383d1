#include "reader/ZKLXmlElement.h"

#include "model/ZNotSupportedItem.h"

#include <utility>

namespace Korvel {

namespace {

ZModelItem* ItemOrNotSupported(ZModelItem* item) {
    return item != nullptr ? item : ZNotSupportedItem::GetInstance();
}

}  // namespace

ZKLXmlElement::ZKLXmlElement(std::string name) : ZKLXmlElement(std::move(name), nullptr) {}

ZKLXmlElement::ZKLXmlElement(std::string name, ZModelItem* item)
    : ZXmlElement(std::move(name)), item_(ItemOrNotSupported(item)) {}

ZKLXmlElement::~ZKLXmlElement() = default;

ZModelItem* ZKLXmlElement::GetModelItem() const {
    return item_;
}

void ZKLXmlElement::Reuse(ZModelItem* item) {
    ClearValue();
    item_ = ItemOrNotSupported(item);
}

}  // namespace Korvel
