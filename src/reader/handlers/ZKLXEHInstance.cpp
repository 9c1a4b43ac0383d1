#include "reader/handlers/ZKLXEHInstance.h"

namespace Korvel {

namespace Msg = ReaderMessages;

ZKLXEHInstance::ZKLXEHInstance(const ZKLXEHContext& context, const XMLCh* tagName)
    : ZKLXEH(tagName, KLTag::Instance, Msg::kInstanceTexts, context) {}

ZKLXEHInstance::~ZKLXEHInstance() = default;

void ZKLXEHInstance::StartElement(const XMLCh* tag, xercesc::AttributeList& attributes) {
    CountOpen();
    const XMLCh* idText = attributes.getValue(u"id");
    OwnScope own(*this);
    NameOwn(OwnField::Instance, idText);
    if (idText == nullptr || idText[0] == 0) {
        ReportText(ReportLevelError, Msg::kInstanceNoId);
        AddEmptyElement(tag);
        return;
    }
    if (Builder() == nullptr || Ecu() == nullptr) {
        AddEmptyElement(tag);
        return;
    }
    const std::string id = Platform::Utf16ToUtf8(idText);
    ZInstance* instance = Builder()->AddInstance(id.c_str());
    if (instance == nullptr) {
        // Unlike the other handlers' texts, this one names no reason.
        if (Wants(ReportLevelError)) {
            Report(ReportLevelError, Msg::kInstanceAddFailedBegin + id + Msg::kInstanceAddFailedEnd);
        }
        AddEmptyElement(tag);
        return;
    }
    AddElement(tag, instance);
}

void ZKLXEHInstance::EndElement(const XMLCh* /*tag*/) {
    CountClose();
    // The frame pops after EndElement, so the top record is still this element's own.
    ZInstance* instance = TopAs<ZInstance>();
    if (instance == nullptr) {
        ReportText(ReportLevelFatal, Msg::kInstanceCloseNoInstance);
        return;
    }
    if (!instance->HasNegResponse() && Builder() != nullptr) {
        Builder()->CreateMessage(*instance, MessageKindNegResponse);
    }
}

}  // namespace Korvel
