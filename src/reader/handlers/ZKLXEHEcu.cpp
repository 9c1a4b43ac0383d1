#include "reader/handlers/ZKLXEHEcu.h"

#include "model/ModelUtils.h"

namespace Korvel {

ZKLXEHEcu::ZKLXEHEcu(const ZKLXEHContext& context, const XMLCh* tagName)
    : ZKLXEH(tagName, KLTag::Ecu, ReaderMessages::kEcuTexts, context) {}

ZKLXEHEcu::~ZKLXEHEcu() = default;

// A protocol text containing "KWP" selects KWP; any other text, or none, selects UDS.
void ZKLXEHEcu::StartElement(const XMLCh* tag, xercesc::AttributeList& attributes) {
    CountOpen();
    uint32_t protocol = ProtocolUds;
    if (const XMLCh* text = attributes.getValue(u"protocol")) {
        protocol = ModelUtils().ProtocolFromName(Platform::Utf16ToUtf8(text).c_str());
    }
    ZEcu* ecu = Ecu();
    if (ecu == nullptr) {
        AddEmptyElement(tag);
        return;
    }
    ecu->SetProtocol(protocol);
    AddElement(tag, ecu);
}

void ZKLXEHEcu::EndElement(const XMLCh* /*tag*/) {
    CountClose();
}

}  // namespace Korvel
