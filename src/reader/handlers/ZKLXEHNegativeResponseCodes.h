// Handler of NEGATIVE_RESPONSE_CODES: stands for the ECU's NRC table on the stack.
#pragma once

#include "reader/handlers/KLTags.h"
#include "reader/handlers/ZKLXEH.h"

namespace Korvel {

class ZKLXEHNegativeResponseCodes : public ZKLXEH {
public:
    explicit ZKLXEHNegativeResponseCodes(const ZKLXEHContext& context,
                                         const XMLCh* tagName = KLTags::kNegativeResponseCodes);
    ~ZKLXEHNegativeResponseCodes() override;
    void StartElement(const XMLCh* tag, xercesc::AttributeList& attributes) override;
    void EndElement(const XMLCh* tag) override;
};

}  // namespace Korvel
