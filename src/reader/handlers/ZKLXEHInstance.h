// Handler of INSTANCE: adds a service instance by id; on close it gives the instance a negative
// response when it has none, so that every instance read has one.
#pragma once

#include "reader/handlers/KLTags.h"
#include "reader/handlers/ZKLXEH.h"

namespace Korvel {

class ZKLXEHInstance : public ZKLXEH {
public:
    explicit ZKLXEHInstance(const ZKLXEHContext& context, const XMLCh* tagName = KLTags::kInstance);
    ~ZKLXEHInstance() override;
    void StartElement(const XMLCh* tag, xercesc::AttributeList& attributes) override;
    void EndElement(const XMLCh* tag) override;
};

}  // namespace Korvel
