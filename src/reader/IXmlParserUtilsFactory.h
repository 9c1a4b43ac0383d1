// Makes the parts of the generic frame that the reader specialises.
#pragma once

#include "reader/IXmlElementStack.h"

namespace Korvel {

class IXmlParserUtilsFactory {
public:
    // A new stack owned by the caller.
    virtual IXmlElementStack* CreateElementStack() = 0;
    // Deletes the stack and sets the caller's pointer to null.
    virtual void DestroyElementStack(IXmlElementStack*& stack) = 0;
    virtual ~IXmlParserUtilsFactory() = default;
};

}  // namespace Korvel
