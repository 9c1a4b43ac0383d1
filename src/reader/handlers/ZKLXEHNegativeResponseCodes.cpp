#include "reader/handlers/ZKLXEHNegativeResponseCodes.h"

namespace Korvel {

ZKLXEHNegativeResponseCodes::ZKLXEHNegativeResponseCodes(const ZKLXEHContext& context, const XMLCh* tagName)
    : ZKLXEH(tagName, KLTag::NegativeResponseCodes, ReaderMessages::kNegativeResponseCodesTexts, context) {}

ZKLXEHNegativeResponseCodes::~ZKLXEHNegativeResponseCodes() = default;

void ZKLXEHNegativeResponseCodes::StartElement(const XMLCh* tag, xercesc::AttributeList& /*attributes*/) {
    CountOpen();
    ZEcu* ecu = Ecu();
    if (ecu == nullptr) {
        AddEmptyElement(tag);
        return;
    }
    AddElement(tag, &ecu->Nrcs());
}

void ZKLXEHNegativeResponseCodes::EndElement(const XMLCh* /*tag*/) {
    CountClose();
}

}  // namespace Korvel
