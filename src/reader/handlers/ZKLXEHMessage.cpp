#include "reader/handlers/ZKLXEHMessage.h"

namespace Korvel {

ZKLXEHMessage::ZKLXEHMessage(const XMLCh* tagName, KLTag countSlot, const ReaderMessages::TagTexts& texts,
                             const char* noInstanceText, uint32_t messageKind, const ZKLXEHContext& context)
    : ZKLXEH(tagName, countSlot, texts, context),
      noInstanceText_(noInstanceText),
      messageKind_(messageKind) {}

ZKLXEHMessage::~ZKLXEHMessage() = default;

void ZKLXEHMessage::StartElement(const XMLCh* tag, xercesc::AttributeList& /*attributes*/) {
    CountOpen();
    OwnScope own(*this);
    NameOwn(OwnField::Message);
    ZMessage* message = nullptr;
    if (TopItem() != nullptr) {
        if (ZInstance* instance = TopAs<ZInstance>()) {
            message = Builder() != nullptr ? Builder()->CreateMessage(*instance, messageKind_) : nullptr;
        } else {
            ReportText(ReportLevelFatal, noInstanceText_);
        }
    }
    if (message == nullptr) {
        AddEmptyElement(tag);
        return;
    }
    AddElement(tag, message);
}

void ZKLXEHMessage::EndElement(const XMLCh* /*tag*/) {
    CountClose();
}

}  // namespace Korvel
