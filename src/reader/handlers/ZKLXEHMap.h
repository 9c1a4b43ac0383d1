// Handler of MAP: an NRC (attribute nrc) for the ECU's table, or a text-table entry (attribute
// val) for the conversion on top of the stack. The attributes decide the role, not the parent.
#pragma once

#include "reader/handlers/KLTags.h"
#include "reader/handlers/ZKLXEH.h"

namespace Korvel {

class ZKLXEHMap : public ZKLXEH {
public:
    explicit ZKLXEHMap(const ZKLXEHContext& context, const XMLCh* tagName = KLTags::kMap);
    ~ZKLXEHMap() override;
    void StartElement(const XMLCh* tag, xercesc::AttributeList& attributes) override;
    void EndElement(const XMLCh* tag) override;

private:
    void AddNrc(const XMLCh* tag, uint8_t code, const XMLCh* text);
    void AddTextTableElement(const XMLCh* tag, const XMLCh* val, const XMLCh* text);
};

}  // namespace Korvel
