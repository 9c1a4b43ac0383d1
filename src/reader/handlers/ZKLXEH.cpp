#include "reader/handlers/ZKLXEH.h"

#include "reader/handlers/AttributeText.h"

#include "reader/ZKLXmlParser.h"

#include "model/ZItemPath.h"
#include "model/ZNotSupportedItem.h"

namespace Korvel {

namespace Msg = ReaderMessages;

ZKLXEH::ZKLXEH(const XMLCh* tagName, KLTag countSlot, const ReaderMessages::TagTexts& texts,
               const ZKLXEHContext& context)
    : ZXmlElementHandler(tagName),
      reporting_(context.reporting),
      builder_(context.builder),
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

void ZKLXEH::AddElement(const XMLCh* tag, ZModelItem* item) {
    const std::string& name = NarrowTagOf(tag);
    // Once its element has left the stack the handler holds the last record alone; it then
    // serves the next element of the same name instead of a new allocation.
    if (current_ && current_.use_count() == 1 && name == current_->Name()) {
        current_->Reuse(item);
        return;
    }
    current_ = std::make_shared<ZKLXmlElement>(name, item);
}

void ZKLXEH::AddEmptyElement(const XMLCh* tag) {
    const std::string& name = NarrowTagOf(tag);
    if (Wants(ReportLevelWarn)) {
        Report(ReportLevelWarn, Msg::kEmptyElementBegin + name + Msg::kEmptyElementEnd);
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
    if (Wants(level)) {
        reporting_->ReportAt(level, message, PlaceOfMessage());
    }
}

void ZKLXEH::ReportText(int32_t level, const char* text) const {
    if (Wants(level)) {
        reporting_->ReportAt(level, text, PlaceOfMessage());
    }
}

ReportPlace ZKLXEH::PlaceOfMessage() const {
    ReportPlace place;
    if (const ZXmlParser* frame = parser_ != nullptr ? parser_->GetXmlParser() : nullptr) {
        const XmlPosition start = frame->ElementStart();
        place.line = start.line;
        place.column = start.column;
    }
    AddItemPath(TopItem(), place.path);
    const auto text = [this]() {
        return own_.text != nullptr ? Platform::Utf16ToUtf8(own_.text) : std::string();
    };
    switch (own_.field) {
        case OwnField::None:
            break;
        case OwnField::Instance:
            place.path.instance = text();
            break;
        case OwnField::Message:
            place.path.message = narrowTag_;
            break;
        case OwnField::Parameter:
            place.path.parameter = text();
            break;
        case OwnField::Conversion:
            place.path.conversion = text();
            break;
        case OwnField::Entry:
            place.path.entry = text();
            break;
        case OwnField::Nrc:
            place.path.nrc = std::to_string(own_.code);
            break;
    }
    return place;
}

ZModelItem* ZKLXEH::TopItem() const {
    if (elementStack_ == nullptr || elementStack_->IsEmpty()) {
        return nullptr;
    }
    // A record of another kind holds no model item: it counts as the wrong kind of item.
    const ZKLXmlElement* top = elementStack_->TopKLElement();
    return top != nullptr ? top->GetModelItem() : ZNotSupportedItem::GetInstance();
}

bool ZKLXEH::TryGetByteValue(const xercesc::AttributeList& attributes, XMLSize_t index, uint8_t& value) {
    const XMLCh* text = index < attributes.getLength() ? attributes.getValue(index) : nullptr;
    if (text == nullptr || text[0] == 0) {
        return false;
    }
    const int32_t number = AttributeText::Atol(text);
    if (number < 0 || number > 255) {
        if (Wants(ReportLevelError)) {
            Report(ReportLevelError, Msg::kByteValueBegin + std::to_string(index) + Msg::kByteValueMiddle +
                                         std::to_string(number) +
                                         (number < 0 ? Msg::kByteValueTooSmall : Msg::kByteValueTooBig));
        }
        return true;
    }
    value = static_cast<uint8_t>(number);
    return true;
}

}  // namespace Korvel
