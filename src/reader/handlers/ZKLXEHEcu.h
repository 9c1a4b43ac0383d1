// Handler of ECU: sets the protocol of the ECU being filled and stands for the ECU on the stack.
#pragma once

#include "reader/handlers/KLTags.h"
#include "reader/handlers/ZKLXEH.h"

namespace Korvel {

class ZKLXEHEcu : public ZKLXEH {
public:
    explicit ZKLXEHEcu(const ZKLXEHContext& context, const XMLCh* tagName = KLTags::kEcu);
    ~ZKLXEHEcu() override;
    void StartElement(const XMLCh* tag, xercesc::AttributeList& attributes) override;
    void EndElement(const XMLCh* tag) override;
};

}  // namespace Korvel
