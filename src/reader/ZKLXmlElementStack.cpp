#include "reader/ZKLXmlElementStack.h"

#include <typeinfo>

namespace Korvel {

ZKLXmlElementStack::ZKLXmlElementStack() = default;

ZKLXmlElementStack::~ZKLXmlElementStack() = default;

// Asked once per element: the exact type is checked first, which costs a comparison where a
// cross-cast through the hierarchy costs a walk.
ZKLXmlElement* ZKLXmlElementStack::TopKLElement() const {
    IXmlElement* top = Top();
    if (top == nullptr) {
        return nullptr;
    }
    if (typeid(*top) == typeid(ZKLXmlElement)) {
        return static_cast<ZKLXmlElement*>(top);
    }
    return dynamic_cast<ZKLXmlElement*>(top);
}

}  // namespace Korvel
