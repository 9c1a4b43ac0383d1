#include "reader/handlers/ZKLXEHMap.h"

#include <string_view>

namespace Korvel {

namespace Msg = ReaderMessages;

namespace {

using WideView = std::basic_string_view<XMLCh>;

}  // namespace

ZKLXEHMap::ZKLXEHMap(const ZKLXEHContext& context, const XMLCh* tagName)
    : ZKLXEH(tagName, KLTag::Map, Msg::kMapTexts, context) {}

ZKLXEHMap::~ZKLXEHMap() = default;

void ZKLXEHMap::StartElement(const XMLCh* tag, xercesc::AttributeList& attributes) {
    CountOpen();
    OwnScope own(*this);
    uint8_t code = 0;
    bool hasNrc = false;
    const XMLCh* val = nullptr;
    const XMLCh* text = nullptr;
    ForEachNamedAttribute(attributes, Msg::kMapNameFailedBegin, [&](XMLSize_t index, WideView attribute) {
        if (attribute == u"nrc") {
            hasNrc = TryGetByteValue(attributes, index, code);
        } else if (attribute == u"val") {
            val = attributes.getValue(index);
        } else if (attribute == u"text") {
            text = attributes.getValue(index);
        }
    });
    const bool hasVal = val != nullptr;
    if (hasNrc == hasVal || text == nullptr) {
        // In this one case nothing is appended: the frame then sees this handler's previous
        // record, and keeps stack and records in step with it.
        ReportText(ReportLevelError, Msg::kMapMissing);
        return;
    }
    if (hasNrc) {
        NameOwn(OwnField::Nrc, nullptr, code);
        AddNrc(tag, code, text);
    } else {
        NameOwn(OwnField::Entry, val);
        AddTextTableElement(tag, val, text);
    }
}

void ZKLXEHMap::AddNrc(const XMLCh* tag, uint8_t code, const XMLCh* text) {
    if (Builder() == nullptr || Ecu() == nullptr) {
        AddEmptyElement(tag);
        return;
    }
    ZNrcItem* item = Builder()->AddNrc(code, Platform::Utf16ToUtf8(text).c_str());
    if (item == nullptr) {
        // The code appears as the raw byte, not as its number; kept as it always was.
        if (Wants(ReportLevelError)) {
            Report(ReportLevelError,
                   Msg::kMapNrcUsedBegin + std::string(1, static_cast<char>(code)) + Msg::kMapNrcUsedEnd);
        }
        AddEmptyElement(tag);
        return;
    }
    AddElement(tag, item);
}

void ZKLXEHMap::AddTextTableElement(const XMLCh* tag, const XMLCh* val, const XMLCh* text) {
    if (val[0] == 0) {
        ReportText(ReportLevelDebug, Msg::kMapEmptyVal);
        AddEmptyElement(tag);
        return;
    }
    ZConversion* conversion = TopAs<ZConversion>();
    if (conversion == nullptr) {
        ReportText(ReportLevelFatal, Msg::kMapNoConversion);
        AddEmptyElement(tag);
        return;
    }
    if (Builder() == nullptr) {
        AddEmptyElement(tag);
        return;
    }
    // The kind is set before the add and stays set when the add fails.
    conversion->SetType(static_cast<uint32_t>(ConversionKind::ValueTable));
    const std::string valText = Platform::Utf16ToUtf8(val);
    const std::string textText = Platform::Utf16ToUtf8(text);
    ZTextTableElement* element =
        Builder()->AddTextTableElement(*conversion, valText.c_str(), textText.c_str());
    if (element == nullptr) {
        if (Wants(ReportLevelError)) {
            Report(ReportLevelError, Msg::kMapValueUsedBegin + valText + Msg::kMapValueUsedMiddle + textText +
                                         Msg::kMapValueUsedEnd);
        }
        AddEmptyElement(tag);
        return;
    }
    AddElement(tag, element);
}

void ZKLXEHMap::EndElement(const XMLCh* /*tag*/) {
    CountClose();
}

}  // namespace Korvel
