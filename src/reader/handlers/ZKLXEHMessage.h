// Common handler of the three message elements (REQUEST, RESPONSE, NEGATIVE_RESPONSE): each
// makes a fresh, empty message of its kind in the instance on top of the stack, replacing
// any message of that kind the instance already has.
#pragma once

#include "reader/handlers/ZKLXEH.h"

#include "model/ZInstance.h"

#include <ZeKL/IInstance.h>

namespace Korvel {

class ZKLXEHMessage : public ZKLXEH {
public:
    ZKLXEHMessage(const XMLCh* tagName, KLTag countSlot, const ReaderMessages::TagTexts& texts,
                  const char* noInstanceText, const ZKLXEHContext& context);
    ~ZKLXEHMessage() override;
    void StartElement(const XMLCh* tag, xercesc::AttributeList& attributes) override;
    void EndElement(const XMLCh* tag) override;

protected:
    // Makes the message of this element's kind in the instance and returns it.
    virtual IMessage* CreateMessage(IInstance& instance) = 0;
    // The same for an instance of this library's model, with the message's own type.
    virtual ZMessage* CreateModelMessage(ZInstance& instance) = 0;

private:
    const char* noInstanceText_;
};

}  // namespace Korvel
