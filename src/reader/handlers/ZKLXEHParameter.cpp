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

// The attributes a parameter reads, found in one walk over the list instead of one search by
// name per attribute.
enum Slot { kId, kValue, kType, kUnit, kSemantics, kConvId, kBitPos, kBitLen, kSlotCount };

bool Equals(const XMLCh* name, const char16_t* expected) {
    while (*name != 0 && *name == *expected) {
        ++name;
        ++expected;
    }
    return *name == *expected;
}

int SlotOf(const XMLCh* name) {
    switch (name[0]) {
        case u'i':
            return Equals(name, u"id") ? kId : -1;
        case u'v':
            return Equals(name, u"value") ? kValue : -1;
        case u't':
            return Equals(name, u"type") ? kType : -1;
        case u'u':
            return Equals(name, u"unit") ? kUnit : -1;
        case u's':
            return Equals(name, u"semantics") ? kSemantics : -1;
        case u'c':
            return Equals(name, u"convId") ? kConvId : -1;
        case u'b':
            return Equals(name, u"bitPos") ? kBitPos : Equals(name, u"bitLen") ? kBitLen : -1;
        default:
            return -1;
    }
}

// Appends the UTF-8 form of `text` and a terminating zero to `out`; gives the offset of the
// text. Attribute values are nearly always ASCII, which needs no transcoder and no string of
// its own.
std::size_t AppendNarrow(std::string& out, const XMLCh* text) {
    const std::size_t start = out.size();
    // Short ASCII values, by far the most common, go through a small buffer in one pass.
    char buffer[64];
    std::size_t length = 0;
    for (; length < sizeof buffer && text[length] != 0 && text[length] < 0x80; ++length) {
        buffer[length] = static_cast<char>(text[length]);
    }
    if (text[length] == 0) {
        out.append(buffer, length);
        out.push_back('\0');
        return start;
    }
    bool ascii = true;
    for (length = 0; text[length] != 0; ++length) {
        ascii = ascii && text[length] < 0x80;
    }
    if (ascii) {
        for (std::size_t i = 0; i < length; ++i) {
            out.push_back(static_cast<char>(text[i]));
        }
    } else {
        out += Platform::Utf16ToUtf8(text, length);
    }
    out.push_back('\0');
    return start;
}

}  // namespace

ZKLXEHParameter::ZKLXEHParameter(const ZKLXEHContext& context, const XMLCh* tagName)
    : ZKLXEH(tagName, KLTag::Parameter, Msg::kParameterTexts, context) {}

ZKLXEHParameter::~ZKLXEHParameter() = default;

void ZKLXEHParameter::StartElement(const XMLCh* tag, xercesc::AttributeList& attributes) {
    CountOpen();
    IMessage* message = TopMessage();
    if (message == nullptr) {
        if (IModelItem* top = TopItem()) {
            message = dynamic_cast<IMessage*>(top);
            if (message == nullptr) {
                ReportText(ReportLevelFatal, Msg::kParameterNoMessage);
            }
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
    // The first attribute of each name counts, as a search by name would find it.
    const XMLCh* found[kSlotCount] = {};
    const XMLSize_t count = attributes.getLength();
    for (XMLSize_t index = 0; index < count; ++index) {
        const XMLCh* name = attributes.getName(index);
        const int slot = name != nullptr ? SlotOf(name) : -1;
        if (slot >= 0 && found[slot] == nullptr) {
            found[slot] = attributes.getValue(index);
        }
    }
    const XMLCh* id = found[kId];
    const XMLCh* value = found[kValue];
    const XMLCh* type = found[kType];
    const XMLCh* unit = found[kUnit];
    const XMLCh* semantics = found[kSemantics];
    const XMLCh* convId = found[kConvId];
    const NumberAttribute bitPos(found[kBitPos]);
    const NumberAttribute bitLen(found[kBitLen]);

    const bool texts = id != nullptr && value != nullptr && type != nullptr && unit != nullptr &&
                       semantics != nullptr && convId != nullptr;
    if (bitPos.valid && bitLen.valid && texts) {
        // The six texts go into one reused buffer; the message copies them.
        scratch_.clear();
        const std::size_t idAt = AppendNarrow(scratch_, id);
        const std::size_t valueAt = AppendNarrow(scratch_, value);
        const std::size_t typeAt = AppendNarrow(scratch_, type);
        const std::size_t unitAt = AppendNarrow(scratch_, unit);
        const std::size_t semanticsAt = AppendNarrow(scratch_, semantics);
        const std::size_t convIdAt = AppendNarrow(scratch_, convId);
        const char* texts8 = scratch_.c_str();
        const uint32_t index =
            message.AddParam(texts8 + idAt, bitPos.value, bitLen.value, texts8 + valueAt, texts8 + typeAt,
                             texts8 + unitAt, texts8 + semanticsAt, texts8 + convIdAt);
        IParam* param = index != InvalidIndex ? message.GetParam(static_cast<int>(index)) : nullptr;
        if (param == nullptr && Wants(ReportLevelError)) {
            Report(ReportLevelError,
                   Msg::kParameterUsedBegin + std::string(texts8 + idAt) + Msg::kParameterUsedEnd);
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
