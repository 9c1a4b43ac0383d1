#include "reader/handlers/ZKLXEHParameter.h"

#include "reader/handlers/AttributeText.h"

#include "platform/Transcode.h"

#include <array>
#include <cstring>
#include <utility>

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

// Compares up to and including the terminator, stopping at the first difference, so a shorter
// name is never read past its end. The first unit is already known to match (see SlotOf). The
// comparisons are spelled out one by one, which the compiler does not do for a loop at -O2.
template <std::size_t N, std::size_t... I>
bool EqualsFrom1(const XMLCh* name, const char16_t (&expected)[N], std::index_sequence<I...>) {
    return ((name[I + 1] == expected[I + 1]) && ...);
}

template <std::size_t N>
bool Equals(const XMLCh* name, const char16_t (&expected)[N]) {
    return EqualsFrom1(name, expected, std::make_index_sequence<N - 1>{});
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

// Where `length` bytes and a zero go at `offset`; `out` grows to twice what is needed.
char* RoomAt(std::string& out, std::size_t offset, std::size_t length) {
    if (offset + length + 1 > out.size()) {
        out.resize((offset + length + 1) * 2);
    }
    return out.data() + offset;
}

// Narrows the texts into `out`, each followed by a zero, gives each text's offset in `at` and
// returns the bytes of all of them.
// Attribute values are nearly always ASCII: such a text is measured in one short pass and then
// copied unit by unit, with no transcoder and no string of its own. `out` only grows, so after
// the first parameters it has the room and is never resized.
template <std::size_t N>
std::size_t NarrowAll(std::string& out, const XMLCh* const (&texts)[N], std::array<uint32_t, N>& at) {
    std::size_t offset = 0;
    for (std::size_t i = 0; i < N; ++i) {
        const XMLCh* text = texts[i];
        XMLCh units = 0;
        std::size_t length = 0;
        for (; text[length] != 0; ++length) {
            units |= text[length];
        }
        at[i] = static_cast<uint32_t>(offset);
        if (units < 0x80) {
            char* block = RoomAt(out, offset, length);
            Platform::CopyAscii(text, length, block);
            block[length] = '\0';
            offset += length + 1;
            continue;
        }
        // Other texts are longer in UTF-8: this one goes through the transcoder.
        const std::string narrow = Platform::Utf16ToUtf8(text, length);
        char* block = RoomAt(out, offset, narrow.size());
        std::memcpy(block, narrow.data(), narrow.size());
        block[narrow.size()] = '\0';
        offset += narrow.size() + 1;
    }
    return offset;
}

}  // namespace

ZKLXEHParameter::ZKLXEHParameter(const ZKLXEHContext& context, const XMLCh* tagName)
    : ZKLXEH(tagName, KLTag::Parameter, Msg::kParameterTexts, context) {}

ZKLXEHParameter::~ZKLXEHParameter() = default;

void ZKLXEHParameter::StartElement(const XMLCh* tag, xercesc::AttributeList& attributes) {
    CountOpen();
    OwnScope own(*this);
    ZMessage* message = nullptr;
    if (ZModelItem* top = TopItem()) {
        message = top->As<ZMessage>();
        if (message == nullptr) {
            ReportText(ReportLevelFatal, Msg::kParameterNoMessage);
        }
    }
    ZParam* param = message != nullptr ? AddParam(*message, attributes) : nullptr;
    if (param == nullptr) {
        AddEmptyElement(tag);
        return;
    }
    AddElement(tag, param);
}

ZParam* ZKLXEHParameter::AddParam(ZMessage& message, const xercesc::AttributeList& attributes) {
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
    NameOwn(OwnField::Parameter, id);
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
        if (Builder() == nullptr) {
            return nullptr;
        }
        // The six texts go into one reused buffer, in the order a parameter keeps them, and the
        // parameter copies them.
        const XMLCh* const wide[ZParam::kSlotCount] = {convId, semantics, value, type, unit, id};
        ZParam::PackedTexts packed{nullptr, 0, {}};
        packed.size = NarrowAll(scratch_, wide, packed.starts);
        packed.bytes = scratch_.data();
        ZParam* param = Builder()->AddParam(message, packed, bitPos.value, bitLen.value);
        if (param == nullptr && Wants(ReportLevelError)) {
            Report(ReportLevelError, Msg::kParameterUsedBegin +
                                         std::string(packed.bytes + packed.starts[ZParam::kId]) +
                                         Msg::kParameterUsedEnd);
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
