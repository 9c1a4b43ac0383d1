#include "reader/handlers/ZKLXEH.h"

#include "reader/handlers/AttributeText.h"

#include "model/ZNotSupportedItem.h"

namespace Korvel {

namespace Msg = ReaderMessages;

ZKLXEH::ZKLXEH(const XMLCh* tagName, KLTag countSlot, const ReaderMessages::TagTexts& texts,
               const ZKLXEHContext& context)
    : ZXmlElementHandler(tagName),
      reporting_(context.reporting),
      ecu_(context.ecu),
      elementStack_(context.elementStack),
      parser_(context.parser),
      tagCounts_(context.tagCounts != nullptr ? context.tagCounts : &ownCounts_),
      countSlot_(countSlot),
      texts_(texts),
      narrowTag_(Platform::Utf16ToUtf8(TagName())) {}

ZKLXEH::~ZKLXEH() = default;

std::shared_ptr<IXmlElement> ZKLXEH::GetCurrentElement() const {
    return current_;
}

// The frame dispatches by exact tag, so the tag is the handler's own and its UTF-8 form is
// known; other tags (direct calls) are converted.
const std::string& ZKLXEH::NarrowTagOf(const XMLCh* tag) {
    if (tag == nullptr || IsHandlerFor(tag)) {
        return narrowTag_;
    }
    otherTag_ = Platform::Utf16ToUtf8(tag);
    return otherTag_;
}

void ZKLXEH::AddElement(const XMLCh* tag, IModelItem* item) {
    const std::string& name = NarrowTagOf(tag);
    // Once its element has left the stack the handler holds the last record alone; it then
    // serves the next element of the same name instead of a new allocation.
    if (current_ && current_.use_count() == 1 && name == current_->Name()) {
        current_->Reuse(item);
        return;
    }
    current_ = std::make_shared<ZKLXmlElement>(name, item);
}

void ZKLXEH::AddMessageElement(const XMLCh* tag, IMessage* message, ZMessage* model) {
    AddElement(tag, message);
    current_->SetMessage(message, model);
}

void ZKLXEH::AddInstanceElement(const XMLCh* tag, IInstance* instance, ZInstance* model) {
    AddElement(tag, instance);
    current_->SetInstance(instance, model);
}

void ZKLXEH::AddConversionElement(const XMLCh* tag, IConversion* conversion) {
    AddElement(tag, conversion);
    current_->SetConversion(conversion);
}

void ZKLXEH::AddEmptyElement(const XMLCh* tag) {
    const std::string& name = NarrowTagOf(tag);
    if (Wants(ReportLevelWarn)) {
        reporting_->Report(ReportLevelWarn, Msg::kEmptyElementBegin + name + Msg::kEmptyElementEnd);
    }
    current_ = std::make_shared<ZKLXmlElement>(name);
}

void ZKLXEH::CountOpen() {
    ReportText(ReportLevelDebug, texts_.open);
    ++(*tagCounts_)[countSlot_].open;
}

void ZKLXEH::CountClose() {
    ReportText(ReportLevelDebug, texts_.close);
    TagCounts::Pair& counts = (*tagCounts_)[countSlot_];
    ++counts.close;
    if (counts.open != counts.close) {
        ReportText(ReportLevelError, texts_.count);
    }
}

void ZKLXEH::Report(int32_t level, const std::string& message) const {
    if (reporting_) {
        reporting_->Report(level, message);
    }
}

void ZKLXEH::ReportText(int32_t level, const char* text) const {
    if (Wants(level)) {
        reporting_->Report(level, text);
    }
}

const ZKLXmlElement* ZKLXEH::TopRecord() const {
    return elementStack_ != nullptr && !elementStack_->IsEmpty() ? elementStack_->TopKLElement() : nullptr;
}

IModelItem* ZKLXEH::TopItem() const {
    if (elementStack_ == nullptr || elementStack_->IsEmpty()) {
        return nullptr;
    }
    // A record of another kind holds no model item: it counts as the wrong kind of item.
    const ZKLXmlElement* top = elementStack_->TopKLElement();
    return top != nullptr ? top->GetModelItem() : ZNotSupportedItem::GetInstance();
}

IMessage* ZKLXEH::TopMessage() const {
    return TopTyped(&ZKLXmlElement::GetMessage);
}

ZMessage* ZKLXEH::TopModelMessage() const {
    return TopTyped(&ZKLXmlElement::GetModelMessage);
}

ZInstance* ZKLXEH::TopModelInstance() const {
    return TopTyped(&ZKLXmlElement::GetModelInstance);
}

// Records of instance and conversion elements carry the typed item; any other record is
// checked with a cast, so the answer is the same either way.
IInstance* ZKLXEH::TopInstance() const {
    IInstance* instance = TopTyped(&ZKLXmlElement::GetInstance);
    return instance != nullptr ? instance : dynamic_cast<IInstance*>(TopItem());
}

IConversion* ZKLXEH::TopConversion() const {
    IConversion* conversion = TopTyped(&ZKLXmlElement::GetConversion);
    return conversion != nullptr ? conversion : dynamic_cast<IConversion*>(TopItem());
}

bool ZKLXEH::TryGetByteValue(const xercesc::AttributeList& attributes, XMLSize_t index, uint8_t& value) {
    const XMLCh* text = index < attributes.getLength() ? attributes.getValue(index) : nullptr;
    if (text == nullptr || text[0] == 0) {
        return false;
    }
    const int32_t number = AttributeText::Atol(text);
    if (number < 0 || number > 255) {
        if (Wants(ReportLevelError)) {
            reporting_->Report(ReportLevelError,
                               Msg::kByteValueBegin + std::to_string(index) + Msg::kByteValueMiddle +
                                   std::to_string(number) +
                                   (number < 0 ? Msg::kByteValueTooSmall : Msg::kByteValueTooBig));
        }
        return true;
    }
    value = static_cast<uint8_t>(number);
    return true;
}

}  // namespace Korvel
