#include "reader/handlers/ZKLXEHInstance.h"

namespace Korvel {

namespace Msg = ReaderMessages;

ZKLXEHInstance::ZKLXEHInstance(const ZKLXEHContext& context, const XMLCh* tagName)
    : ZKLXEH(tagName, KLTag::Instance, Msg::kInstanceTexts, context) {}

ZKLXEHInstance::~ZKLXEHInstance() = default;

void ZKLXEHInstance::StartElement(const XMLCh* tag, xercesc::AttributeList& attributes) {
    CountOpen();
    const XMLCh* idText = attributes.getValue(u"id");
    if (idText == nullptr || idText[0] == 0) {
        ReportText(ReportLevelError, Msg::kInstanceNoId);
        AddEmptyElement(tag);
        return;
    }
    if (Ecu() == nullptr) {
        AddEmptyElement(tag);
        return;
    }
    const std::string id = Platform::Utf16ToUtf8(idText);
    IInstanceContainer* instances = Ecu()->GetInstanceContainer();
    const uint32_t index = instances->AddInstance(id.c_str());
    // The model's container gives null for an index out of range, InvalidIndex included.
    ZEcu* modelEcu = ModelEcu();
    ZInstance* model = modelEcu != nullptr ? modelEcu->GetInstanceContainer()->GetInstance(index) : nullptr;
    IInstance* instance = model;
    if (modelEcu == nullptr && index != InvalidIndex) {
        instance = instances->GetInstance(index);
    }
    if (instance == nullptr) {
        // Unlike the other handlers' texts, this one names no reason.
        if (Wants(ReportLevelError)) {
            Report(ReportLevelError, Msg::kInstanceAddFailedBegin + id + Msg::kInstanceAddFailedEnd);
        }
        AddEmptyElement(tag);
        return;
    }
    AddInstanceElement(tag, instance, model);
}

ZEcu* ZKLXEHInstance::ModelEcu() {
    if (!ecuChecked_) {
        modelEcu_ = dynamic_cast<ZEcu*>(Ecu());
        ecuChecked_ = true;
    }
    return modelEcu_;
}

void ZKLXEHInstance::EndElement(const XMLCh* /*tag*/) {
    CountClose();
    // The frame pops after EndElement, so the top record is still this element's own.
    IInstance* instance = TopInstance();
    if (instance == nullptr) {
        ReportText(ReportLevelFatal, Msg::kInstanceCloseNoInstance);
        return;
    }
    if (!instance->HasNegResponse()) {
        instance->CreateNegResponse();
    }
}

}  // namespace Korvel
