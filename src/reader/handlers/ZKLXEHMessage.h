// Common handler of the three message elements (REQUEST, RESPONSE, NEGATIVE_RESPONSE): each
// makes a fresh, empty message of its kind in the instance on top of the stack, replacing
// any message of that kind the instance already has.
#pragma once

#include "reader/handlers/ZKLXEH.h"

namespace Korvel {

class ZKLXEHMessage : public ZKLXEH {
public:
    ZKLXEHMessage(const XMLCh* tagName, KLTag countSlot, const ReaderMessages::TagTexts& texts,
                  const char* noInstanceText, uint32_t messageKind, const ZKLXEHContext& context);
    ~ZKLXEHMessage() override;
    void StartElement(const XMLCh* tag, xercesc::AttributeList& attributes) override;
    void EndElement(const XMLCh* tag) override;

private:
    const char* noInstanceText_;
    uint32_t messageKind_;
};

}  // namespace Korvel
