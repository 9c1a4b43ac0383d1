// The reader's element stack: the top record as the reader's own record type.
#pragma once

#include "reader/ZKLXmlElement.h"
#include "reader/ZXmlElementStack.h"

namespace Korvel {

class ZKLXmlElementStack : public ZXmlElementStack {
public:
    ZKLXmlElementStack();
    ~ZKLXmlElementStack() override;

    // The top record, or null when the stack is empty or its top is of another kind.
    ZKLXmlElement* TopKLElement() const;
};

}  // namespace Korvel
