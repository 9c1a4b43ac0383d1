#include "reader/handlers/ZKLXEHNegativeResponseCodes.h"

namespace Korvel {

ZKLXEHNegativeResponseCodes::ZKLXEHNegativeResponseCodes(const ZKLXEHContext& context, const XMLCh* tagName)
    : ZKLXEH(tagName, KLTag::NegativeResponseCodes, ReaderMessages::kNegativeResponseCodesTexts, context) {}

ZKLXEHNegativeResponseCodes::~ZKLXEHNegativeResponseCodes() = default;

void ZKLXEHNegativeResponseCodes::StartElement(const XMLCh* tag, xercesc::AttributeList& /*attributes*/) {
    CountOpen();
    if (Ecu() == nullptr) {
        AddEmptyElement(tag);
        return;
    }
    AddElement(tag, Ecu()->GetNrcContainer());
}

void ZKLXEHNegativeResponseCodes::EndElement(const XMLCh* /*tag*/) {
    CountClose();
}

}  // namespace Korvel
