#include "reader/handlers/ZKLXEHMessage.h"

namespace Korvel {

ZKLXEHMessage::ZKLXEHMessage(const XMLCh* tagName, KLTag countSlot, const ReaderMessages::TagTexts& texts,
                             const char* noInstanceText, const ZKLXEHContext& context)
    : ZKLXEH(tagName, countSlot, texts, context), noInstanceText_(noInstanceText) {}

ZKLXEHMessage::~ZKLXEHMessage() = default;

void ZKLXEHMessage::StartElement(const XMLCh* tag, xercesc::AttributeList& /*attributes*/) {
    CountOpen();
    IMessage* message = nullptr;
    ZMessage* model = nullptr;
    if (TopItem() != nullptr) {
        if (ZInstance* modelInstance = TopModelInstance()) {
            model = CreateModelMessage(*modelInstance);
            message = model;
        } else if (IInstance* instance = TopInstance()) {
            message = CreateMessage(*instance);
        } else {
            ReportText(ReportLevelFatal, noInstanceText_);
        }
    }
    if (message == nullptr) {
        AddEmptyElement(tag);
        return;
    }
    AddMessageElement(tag, message, model);
}

void ZKLXEHMessage::EndElement(const XMLCh* /*tag*/) {
    CountClose();
}

}  // namespace Korvel
