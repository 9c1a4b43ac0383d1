// The stack of open elements of one parse.
#pragma once

#include "reader/IXmlElement.h"

#include <memory>

namespace Korvel {

class IXmlElementStack {
public:
    virtual bool IsEmpty() const = 0;
    virtual void Push(std::shared_ptr<IXmlElement> element) = 0;
    // Does nothing on an empty stack.
    virtual void Pop() = 0;
    // The top record, or null on an empty stack.
    virtual IXmlElement* Top() const = 0;
    virtual ~IXmlElementStack() = default;
};

}  // namespace Korvel
