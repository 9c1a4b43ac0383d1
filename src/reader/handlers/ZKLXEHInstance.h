// Handler of INSTANCE: adds a service instance by id; on close it gives the instance a negative
// response when it has none, so that every instance read has one.
#pragma once

#include "reader/handlers/KLTags.h"
#include "reader/handlers/ZKLXEH.h"

#include "model/ZEcu.h"

namespace Korvel {

class ZKLXEHInstance : public ZKLXEH {
public:
    explicit ZKLXEHInstance(const ZKLXEHContext& context, const XMLCh* tagName = KLTags::kInstance);
    ~ZKLXEHInstance() override;
    void StartElement(const XMLCh* tag, xercesc::AttributeList& attributes) override;
    void EndElement(const XMLCh* tag) override;

private:
    // The ECU of this read with its own type (null for another implementation), found with one
    // cast per handler instead of one per instance. The handler's ECU never changes.
    ZEcu* ModelEcu();
    bool ecuChecked_ = false;
    ZEcu* modelEcu_ = nullptr;
};

}  // namespace Korvel
