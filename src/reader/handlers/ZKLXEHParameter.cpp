#include "reader/handlers/ZKLXEHParameter.h"

#include "reader/handlers/AttributeText.h"

#include <ZeKL/IMessage.h>

namespace Korvel {

namespace Msg = ReaderMessages;

namespace {

// A number attribute: missing when absent or empty, invalid when negative; the kept value
// is 0 unless the number is valid.
struct NumberAttribute {
    explicit NumberAttribute(const XMLCh* text) {
        if (text == nullptr || text[0] == 0) {
            return;
        }
        const int32_t number = AttributeText::Atol(text);
        if (number >= 0) {
            valid = true;
            value = static_cast<uint32_t>(number);
        }
    }
    bool valid = false;
    uint32_t value = 0;
};

std::string Narrow(const XMLCh* text) {
    return text != nullptr ? Platform::Utf16ToUtf8(text) : std::string();
}

}  // namespace

ZKLXEHParameter::ZKLXEHParameter(const ZKLXEHContext& context, const XMLCh* tagName)
    : ZKLXEH(tagName, KLTag::Parameter, Msg::kParameterTexts, context) {}

ZKLXEHParameter::~ZKLXEHParameter() = default;

void ZKLXEHParameter::StartElement(const XMLCh* tag, xercesc::AttributeList& attributes) {
    CountOpen();
    IMessage* message = nullptr;
    if (IModelItem* top = TopItem()) {
        message = dynamic_cast<IMessage*>(top);
        if (message == nullptr) {
            ReportText(ReportLevelFatal, Msg::kParameterNoMessage);
        }
    }
    IParam* param = message != nullptr ? AddParam(*message, attributes) : nullptr;
    if (param == nullptr) {
        AddEmptyElement(tag);
        return;
    }
    AddElement(tag, param);
}

IParam* ZKLXEHParameter::AddParam(IMessage& message, const xercesc::AttributeList& attributes) {
    const XMLCh* id = attributes.getValue(u"id");
    const XMLCh* value = attributes.getValue(u"value");
    const XMLCh* type = attributes.getValue(u"type");
    const XMLCh* unit = attributes.getValue(u"unit");
    const XMLCh* semantics = attributes.getValue(u"semantics");
    const XMLCh* convId = attributes.getValue(u"convId");
    const NumberAttribute bitPos(attributes.getValue(u"bitPos"));
    const NumberAttribute bitLen(attributes.getValue(u"bitLen"));

    const bool texts = id != nullptr && value != nullptr && type != nullptr && unit != nullptr &&
                       semantics != nullptr && convId != nullptr;
    if (bitPos.valid && bitLen.valid && texts) {
        const std::string idText = Narrow(id);
        const uint32_t index = message.AddParam(
            idText.c_str(), bitPos.value, bitLen.value, Narrow(value).c_str(), Narrow(type).c_str(),
            Narrow(unit).c_str(), Narrow(semantics).c_str(), Narrow(convId).c_str());
        IParam* param = index != InvalidIndex ? message.GetParam(static_cast<int>(index)) : nullptr;
        if (param == nullptr && Wants(ReportLevelError)) {
            Report(ReportLevelError, Msg::kParameterUsedBegin + idText + Msg::kParameterUsedEnd);
        }
        return param;
    }
    if (!Wants(ReportLevelError)) {
        return nullptr;
    }
    // bitPos is named whenever its kept value is 0, also when it is validly 0; the list has
    // always read so and callers match on it.
    std::string text =
        Msg::kParameterMissingBegin + Narrow(id) + Msg::kParameterMissingMiddle + Msg::kParameterMissingList;
    const auto name = [&text](bool failing, const char* attribute) {
        if (failing) {
            text.append(attribute).append(" ");
        }
    };
    name(id == nullptr, "id");
    name(bitPos.value == 0, "bitPos");
    name(!bitLen.valid, "bitLen");
    name(value == nullptr, "value");
    name(type == nullptr, "type");
    name(unit == nullptr, "unit");
    name(semantics == nullptr, "semantics");
    name(convId == nullptr, "convId");
    Report(ReportLevelError, text);
    return nullptr;
}

void ZKLXEHParameter::EndElement(const XMLCh* /*tag*/) {
    CountClose();
}

}  // namespace Korvel
