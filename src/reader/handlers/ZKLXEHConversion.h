// Handler of CONVERSION: adds a linear conversion (id, factor, offset) to the ECU; its MAP
// children turn it into a value table.
#pragma once

#include "reader/handlers/KLTags.h"
#include "reader/handlers/ZKLXEH.h"

namespace Korvel {

class ZKLXEHConversion : public ZKLXEH {
public:
    explicit ZKLXEHConversion(const ZKLXEHContext& context, const XMLCh* tagName = KLTags::kConversion);
    ~ZKLXEHConversion() override;
    void StartElement(const XMLCh* tag, xercesc::AttributeList& attributes) override;
    void EndElement(const XMLCh* tag) override;
};

}  // namespace Korvel
