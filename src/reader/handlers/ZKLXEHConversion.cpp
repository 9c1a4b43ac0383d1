#include "reader/handlers/ZKLXEHConversion.h"

#include "reader/handlers/AttributeText.h"

#include <string_view>

namespace Korvel {

namespace Msg = ReaderMessages;

namespace {

using WideView = std::basic_string_view<XMLCh>;

bool HasText(const XMLCh* text) {
    return text != nullptr && text[0] != 0;
}

}  // namespace

ZKLXEHConversion::ZKLXEHConversion(const ZKLXEHContext& context, const XMLCh* tagName)
    : ZKLXEH(tagName, KLTag::Conversion, Msg::kConversionTexts, context) {}

ZKLXEHConversion::~ZKLXEHConversion() = default;

void ZKLXEHConversion::StartElement(const XMLCh* tag, xercesc::AttributeList& attributes) {
    CountOpen();
    OwnScope own(*this);
    const XMLCh* id = nullptr;
    bool hasFactor = false;
    bool hasOffset = false;
    double factor = 0.0;
    double offset = 0.0;
    ForEachNamedAttribute(attributes, Msg::kConversionNameFailedBegin,
                          [&](XMLSize_t index, WideView attribute) {
                              const XMLCh* value = attributes.getValue(index);
                              if (!HasText(value)) {
                                  return;
                              }
                              if (attribute == u"id") {
                                  id = value;
                              } else if (attribute == u"factor") {
                                  factor = AttributeText::Atof(value);
                                  hasFactor = true;
                              } else if (attribute == u"offset") {
                                  offset = AttributeText::Atof(value);
                                  hasOffset = true;
                              }
                          });
    NameOwn(OwnField::Conversion, id);
    if (id == nullptr || !hasFactor || !hasOffset) {
        ReportText(ReportLevelError, Msg::kConversionMissing);
        AddEmptyElement(tag);
        return;
    }
    if (Builder() == nullptr || Ecu() == nullptr) {
        AddEmptyElement(tag);
        return;
    }
    const std::string idText = Platform::Utf16ToUtf8(id);
    ZConversion* conversion = Builder()->AddConversion(idText.c_str(), factor, offset);
    if (conversion == nullptr) {
        if (Wants(ReportLevelError)) {
            Report(ReportLevelError, Msg::kConversionUsedBegin + idText + Msg::kConversionUsedEnd);
        }
        AddEmptyElement(tag);
        return;
    }
    AddElement(tag, conversion);
}

void ZKLXEHConversion::EndElement(const XMLCh* /*tag*/) {
    CountClose();
}

}  // namespace Korvel
