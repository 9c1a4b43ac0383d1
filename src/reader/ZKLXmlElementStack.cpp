#include "reader/ZKLXmlElementStack.h"

namespace Korvel {

ZKLXmlElementStack::ZKLXmlElementStack() = default;

ZKLXmlElementStack::~ZKLXmlElementStack() = default;

ZKLXmlElement* ZKLXmlElementStack::TopKLElement() const {
    return dynamic_cast<ZKLXmlElement*>(Top());
}

}  // namespace Korvel
