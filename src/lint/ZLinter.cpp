#include "lint/ZLinter.h"

#include "model/ModelUtils.h"
#include "model/ZItemPath.h"
#include "platform/CNumbers.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <map>

namespace Korvel {

namespace {

constexpr const char* kTypeNames[] = {"undefined", "none",   "unsigned", "signed", "bcd",
                                      "fp",        "double", "ascii",    "ucs2",   "utf8"};
constexpr const char* kSemanticsWords[] = {"SID", "XID", "CONST", "MOTOROLA", "GAP", "SID_NR"};
// The words whose presence anywhere in the text sets a flag.
constexpr const char* kFlagWords[] = {"SID", "XID", "CONST", "MOTOROLA", "GAP"};

// A positive response's service id is the request's plus this, in UDS and KWP alike.
constexpr uint32_t kPositiveResponseOffset = 0x40;
constexpr uint32_t kNegativeResponseSid = 0x7F;

// Constants placed beyond this many bits are left out of the comparison of requests: no real
// request is that long, and a hostile position must not make a pattern of gigabytes.
constexpr uint64_t kMaxPatternBits = 1u << 16;
// Nor is a constant's byte image made beyond this many bytes: the image of an ascii or none
// value is as long as its parameter, which a document can make gigabytes long.
constexpr uint32_t kMaxImageBytes = 1u << 16;

std::string Quote(const std::string& text) {
    return "'" + text + "'";
}

std::string HexImage(const ByteBuffer& bytes) {
    static const char digits[] = "0123456789ABCDEF";
    std::string text;
    for (uint8_t byte : bytes) {
        text += text.empty() ? "" : " ";
        text += digits[byte >> 4];
        text += digits[byte & 0xF];
    }
    return text;
}

std::string Hex(uint32_t value) {
    static const char digits[] = "0123456789ABCDEF";
    std::string text;
    do {
        text.insert(text.begin(), digits[value & 0xF]);
        value >>= 4;
    } while (value != 0);
    if (text.size() % 2 != 0) {
        text.insert(text.begin(), '0');
    }
    return "0x" + text;
}

// "bits 8 to 15"; "bit 8" for one.
std::string Bits(uint64_t first, uint64_t end) {
    if (end == first + 1) {
        return "bit " + std::to_string(first);
    }
    return "bits " + std::to_string(first) + " to " + std::to_string(end - 1);
}

std::string TypeNameOf(ParamDataType type) {
    return ModelUtils().DataTypeToName(type);
}

// The parameter's value as a number when it has one (CONST parameters with a readable value).
bool ValueNumber(const IParam& param, uint32_t& value) {
    return ModelUtils().ValueToUInt32(param.GetValue(), param.GetDataType(), param.IsMotorola(), value);
}

// The first CONST parameter that says SID, else the first that says SID, else null.
const IParam* SidParam(const IMessage& message) {
    const IParam* any = nullptr;
    for (uint32_t i = 0; i < message.GetCount(); ++i) {
        const IParam* param = message.GetParam(static_cast<int>(i));
        if (param == nullptr || !param->IsSid()) {
            continue;
        }
        if (param->IsConst()) {
            return param;
        }
        if (any == nullptr) {
            any = param;
        }
    }
    return any;
}

// The parameter that covers exactly the bits [position, position + length), or null.
const IParam* ParamAt(const IMessage& message, uint32_t position, uint32_t length) {
    for (uint32_t i = 0; i < message.GetCount(); ++i) {
        const IParam* param = message.GetParam(static_cast<int>(i));
        if (param != nullptr && param->GetBitPos() == position && param->GetBitLength() == length) {
            return param;
        }
    }
    return nullptr;
}

bool IsXmlSpace(char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

// A table value read as an integer, by the library's rule for numbers (0x hexadecimal, a
// leading 0 octal), the whole text being the number (blanks around it allowed).
bool TableValueNumber(const char* text, long long& value) {
    while (IsXmlSpace(*text)) {
        ++text;
    }
    if (*text == '\0') {
        return false;
    }
    errno = 0;
    char* end = nullptr;
    value = std::strtoll(text, &end, 0);
    if (end == text || errno == ERANGE) {
        return false;
    }
    while (IsXmlSpace(*end)) {
        ++end;
    }
    return *end == '\0';
}

// Whether a number value's whole text is the number the library reads from it: integers by the
// library's rule (0x hexadecimal, a leading 0 octal), reals as atof reads them; blanks around
// it allowed. Types other than these four have no number to read.
bool IsWholeNumberValue(const char* text, ParamDataType type) {
    const char* end = text;
    if (type == ParamDataType::Unsigned || type == ParamDataType::Signed) {
        long long value = 0;
        return TableValueNumber(text, value);
    }
    if (type == ParamDataType::Fp || type == ParamDataType::Double) {
        char* stop = nullptr;
        Platform::StrToDouble(text, &stop);
        end = stop;
        if (end == text) {
            return false;
        }
        while (IsXmlSpace(*end)) {
            ++end;
        }
        return *end == '\0';
    }
    return true;
}

// Places `count` bits of `value` (most significant first) at bit `position` of the pattern.
void PlaceBits(std::string& mask, std::string& bits, uint64_t position, uint32_t count, uint64_t value) {
    const uint64_t end = position + count;
    if (mask.size() < (end + 7) / 8) {
        mask.resize((end + 7) / 8, '\0');
        bits.resize(mask.size(), '\0');
    }
    for (uint32_t i = 0; i < count; ++i) {
        const uint64_t bit = position + i;
        const auto flag = static_cast<char>(0x80u >> (bit % 8));
        mask[bit / 8] = static_cast<char>(mask[bit / 8] | flag);
        if (((value >> (count - 1 - i)) & 1u) != 0) {
            bits[bit / 8] = static_cast<char>(bits[bit / 8] | flag);
        } else {
            bits[bit / 8] = static_cast<char>(bits[bit / 8] & ~flag);
        }
    }
}

}  // namespace

ZLinter::ZLinter(const IEcu& ecu, const ZItemPositions* positions, std::vector<LintFinding>& findings)
    : ecu_(ecu), positions_(positions), findings_(findings) {}

LintFinding ZLinter::Make(ZRule rule, const ItemPath& path, std::string text, XmlPosition position) {
    const LintRule& info = RuleOf(rule);
    LintFinding finding;
    finding.rule = info.id;
    finding.severity = info.severity;
    finding.text = std::move(text);
    finding.path = path;
    finding.line = position.line;
    finding.column = position.column;
    return finding;
}

void ZLinter::Add(ZRule rule, const IModelItem* item, const ItemPath& path, std::string text) {
    const XmlPosition position = positions_ != nullptr ? positions_->Find(item) : XmlPosition{};
    findings_.push_back(Make(rule, path, std::move(text), position));
}

void ZLinter::Run() {
    const IConversionContainer& conversions = *ecu_.GetConversionContainer();
    for (uint32_t i = 0; i < conversions.GetCount(); ++i) {
        if (const IConversion* conversion = conversions.GetConversion(i)) {
            conversions_.emplace(conversion->GetId(), conversion);
        }
    }
    const IInstanceContainer& instances = *ecu_.GetInstanceContainer();
    for (uint32_t i = 0; i < instances.GetCount(); ++i) {
        if (const IInstance* instance = instances.GetInstance(i)) {
            CheckInstance(*instance);
        }
    }
    CheckConversions();
    CheckNrcTable();
}

void ZLinter::CheckInstance(const IInstance& instance) {
    ItemPath path;
    path.instance = instance.GetId();
    const IMessage* messages[] = {instance.GetRequest(), instance.GetPosResponse(),
                                  instance.GetNegResponse()};
    for (const IMessage* message : messages) {
        if (message != nullptr) {
            ItemPath messagePath = path;
            messagePath.message = MessageElementName(message->GetMessageKind());
            CheckMessage(*message, messagePath);
        }
    }
    CheckRequestSid(instance, path);
    CheckResponseSid(instance, path);
    CheckNegativeResponse(instance, path);
    NoteRequestConstants(instance, path);
}

void ZLinter::CheckMessage(const IMessage& message, const ItemPath& messagePath) {
    for (uint32_t i = 0; i < message.GetCount(); ++i) {
        if (const IParam* param = message.GetParam(static_cast<int>(i))) {
            ItemPath path = messagePath;
            path.parameter = param->GetId();
            CheckParam(*param, path);
        }
    }
    CheckLayout(message, messagePath);
}

void ZLinter::CheckParam(const IParam& param, const ItemPath& path) {
    CheckTypeName(param, path);
    const ParamDataType type = param.GetDataType();
    const uint32_t bits = param.GetBitLength();
    if ((type == ParamDataType::Fp && bits != 32) || (type == ParamDataType::Double && bits != 64)) {
        Add(ZRule::TypeLength, &param, path,
            "type " + Quote(param.GetDataTypeName()) + " is " + (type == ParamDataType::Fp ? "32" : "64") +
                " bits long, the parameter " + std::to_string(bits));
    }
    CheckSemantics(param, path);
    if (param.IsConst() && param.GetByteLength() <= kMaxImageBytes) {
        ByteBuffer image;
        if (!ModelUtils().ValueToBytes(param.GetValue(), type, param.GetByteLength(), image)) {
            const std::string typeText =
                type == ParamDataType::Undefined ? "no type" : "type " + TypeNameOf(type);
            Add(ZRule::ConstValue, &param, path,
                "CONST value " + Quote(param.GetValue()) + " has no byte image as " + typeText + " of " +
                    std::to_string(bits) + " bits");
        } else if (!IsWholeNumberValue(param.GetValue(), type)) {
            // The library reads a number up to its first other character: "0xZZ" is 0.
            Add(ZRule::ConstValue, &param, path,
                "CONST value " + Quote(param.GetValue()) + " is not a number of type " + TypeNameOf(type) +
                    "; its byte image is " + HexImage(image));
        }
    }
    const char* convId = param.GetConvId();
    if (convId[0] != '\0') {
        const auto found = conversions_.find(convId);
        if (found == conversions_.end()) {
            Add(ZRule::ConversionMissing, &param, path, "conversion " + Quote(convId) + " does not exist");
        } else {
            usedConversions_.insert(found->first);
        }
    }
}

void ZLinter::CheckTypeName(const IParam& param, const ItemPath& path) {
    const std::string name = param.GetDataTypeName();
    const bool exact = std::any_of(std::begin(kTypeNames), std::end(kTypeNames),
                                   [&name](const char* each) { return name == each; });
    const ParamDataType type = param.GetDataType();
    if (!exact && type == ParamDataType::Undefined) {
        Add(ZRule::TypeUnknown, &param, path,
            "type " + Quote(name) + " is none of the ten type names and reads as no type");
    } else if (!exact) {
        Add(ZRule::TypeName, &param, path,
            "type " + Quote(name) + " is not one of the ten type names; it reads as " +
                Quote(TypeNameOf(type)) + " by its first letters");
    } else if (type != ParamDataType::Undefined && name != TypeNameOf(type)) {
        Add(ZRule::TypeName, &param, path,
            "type " + Quote(name) + " reads as " + Quote(TypeNameOf(type)) + " by its first letters");
    }
}

void ZLinter::CheckSemantics(const IParam& param, const ItemPath& path) {
    const char* text = param.GetSemantics();
    const char* at = text;
    while (*at != '\0') {
        while (IsXmlSpace(*at)) {
            ++at;
        }
        const char* begin = at;
        while (*at != '\0' && !IsXmlSpace(*at)) {
            ++at;
        }
        if (at == begin) {
            break;
        }
        const std::string word(begin, at);
        if (std::any_of(std::begin(kSemanticsWords), std::end(kSemanticsWords),
                        [&word](const char* each) { return word == each; })) {
            continue;
        }
        std::string sets;
        for (const char* flag : kFlagWords) {
            if (word.find(flag) != std::string::npos) {
                sets += sets.empty() ? flag : std::string(" and ") + flag;
            }
        }
        std::string message =
            "semantics word " + Quote(word) + " is not one of SID, XID, CONST, MOTOROLA, GAP, SID_NR";
        if (!sets.empty()) {
            message += "; it still sets " + sets + ", found inside it";
        }
        Add(ZRule::SemanticsWord, &param, path, message);
    }
}

// The parameters in order of position: each one that starts before the furthest end so far
// overlaps the parameter that reaches furthest; a gap between that end and the next start is a
// hole. Parameters of length 0 cover nothing.
void ZLinter::CheckLayout(const IMessage& message, const ItemPath& messagePath) {
    struct Span {
        uint64_t begin;
        uint64_t end;
        const IParam* param;
    };
    std::vector<Span> spans;
    spans.reserve(message.GetCount());
    for (uint32_t i = 0; i < message.GetCount(); ++i) {
        const IParam* param = message.GetParam(static_cast<int>(i));
        if (param != nullptr && param->GetBitLength() != 0) {
            spans.push_back(
                Span{param->GetBitPos(), uint64_t{param->GetBitPos()} + param->GetBitLength(), param});
        }
    }
    std::stable_sort(spans.begin(), spans.end(),
                     [](const Span& a, const Span& b) { return a.begin < b.begin; });
    uint64_t reach = 0;
    const Span* furthest = nullptr;
    for (const Span& span : spans) {
        ItemPath path = messagePath;
        path.parameter = span.param->GetId();
        if (furthest != nullptr && span.begin < reach) {
            Add(ZRule::Overlap, span.param, path,
                Bits(span.begin, std::min(span.end, reach)) + " are also in " +
                    Quote(furthest->param->GetId()) + " (" + Bits(furthest->begin, furthest->end) + ")");
        } else if (span.begin > reach) {
            Add(ZRule::Hole, span.param, path,
                Bits(reach, span.begin) + " before it are in no parameter (mark them with a GAP parameter)");
        }
        if (furthest == nullptr || span.end > reach) {
            reach = span.end;
            furthest = &span;
        }
    }
}

void ZLinter::CheckRequestSid(const IInstance& instance, const ItemPath& instancePath) {
    const IRequest* request = instance.GetRequest();
    if (request == nullptr) {
        Add(ZRule::RequestSid, &instance, instancePath, "the instance has no request");
        return;
    }
    const IParam* sid = SidParam(*request);
    if (sid == nullptr || !sid->IsConst()) {
        ItemPath path = instancePath;
        path.message = MessageElementName(MessageKindRequest);
        Add(ZRule::RequestSid, request, path, "the request has no CONST SID parameter");
    }
}

void ZLinter::CheckResponseSid(const IInstance& instance, const ItemPath& instancePath) {
    const IPosResponse* response = instance.GetPosResponse();
    if (response == nullptr) {
        return;
    }
    ItemPath path = instancePath;
    path.message = MessageElementName(MessageKindPosResponse);
    const IParam* sid = SidParam(*response);
    if (sid == nullptr) {
        Add(ZRule::ResponseSid, response, path, "the positive response has no SID parameter");
        return;
    }
    const IRequest* request = instance.GetRequest();
    const IParam* requestSid = request != nullptr ? SidParam(*request) : nullptr;
    uint32_t expected = 0;
    uint32_t actual = 0;
    if (requestSid == nullptr || !ValueNumber(*requestSid, expected) || !ValueNumber(*sid, actual)) {
        return;  // an unreadable value is const-value's finding
    }
    if (actual != expected + kPositiveResponseOffset) {
        path.parameter = sid->GetId();
        Add(ZRule::ResponseSid, sid, path,
            "SID " + Hex(actual) + " is not the request's " + Hex(expected) + " plus 0x40 (" +
                Hex(expected + kPositiveResponseOffset) + ")");
    }
}

void ZLinter::CheckNegativeResponse(const IInstance& instance, const ItemPath& instancePath) {
    const INegResponse* response = instance.GetNegResponse();
    if (response == nullptr) {
        return;
    }
    ItemPath path = instancePath;
    path.message = MessageElementName(MessageKindNegResponse);
    const auto fail = [&](const std::string& why) {
        Add(ZRule::NegativeResponse, response, path,
            "the negative response is not shaped 7F, request SID, NRC: " + why);
    };
    uint32_t value = 0;
    const IParam* first = ParamAt(*response, 0, 8);
    if (first == nullptr || !first->IsConst() || !ValueNumber(*first, value) ||
        value != kNegativeResponseSid) {
        fail("bits 0 to 7 are no CONST parameter of value 0x7F");
        return;
    }
    const IParam* second = ParamAt(*response, 8, 8);
    if (second == nullptr || !second->IsConst()) {
        fail("bits 8 to 15 are no CONST parameter holding the request's SID");
        return;
    }
    const IRequest* request = instance.GetRequest();
    const IParam* requestSid = request != nullptr ? SidParam(*request) : nullptr;
    uint32_t expected = 0;
    if (requestSid != nullptr && ValueNumber(*requestSid, expected) && ValueNumber(*second, value) &&
        value != expected) {
        fail("bits 8 to 15 hold " + Hex(value) + ", the request's SID is " + Hex(expected));
        return;
    }
    if (ParamAt(*response, 16, 8) == nullptr) {
        fail("bits 16 to 23 are no NRC parameter");
    }
}

// Two requests are told apart by the bits their CONST parameters fix. A byte-aligned constant
// is placed as its image in transmission order, a shorter one (up to 32 bits) as its number.
void ZLinter::NoteRequestConstants(const IInstance& instance, const ItemPath& instancePath) {
    const IRequest* request = instance.GetRequest();
    if (request == nullptr) {
        return;
    }
    std::string mask;
    std::string bits;
    for (uint32_t i = 0; i < request->GetCount(); ++i) {
        const IParam* param = request->GetParam(static_cast<int>(i));
        if (param == nullptr || !param->IsConst() || param->GetBitLength() == 0) {
            continue;
        }
        const uint64_t position = param->GetBitPos();
        const uint32_t length = param->GetBitLength();
        if (position + length > kMaxPatternBits) {
            continue;
        }
        if (position % 8 == 0 && length % 8 == 0) {
            const ByteBuffer image = param->GetValueImage();
            if (image.size() != length / 8) {
                continue;
            }
            for (std::size_t byte = 0; byte < image.size(); ++byte) {
                PlaceBits(mask, bits, position + byte * 8, 8, image[byte]);
            }
        } else if (length <= 32) {
            uint32_t value = 0;
            if (ValueNumber(*param, value)) {
                PlaceBits(mask, bits, position, length, value);
            }
        }
    }
    if (mask.empty()) {
        return;  // a request without constants is request-sid's finding
    }
    const auto inserted = requestConstants_.emplace(mask + '\n' + bits, instance.GetId());
    if (!inserted.second) {
        ItemPath path = instancePath;
        path.message = MessageElementName(MessageKindRequest);
        Add(ZRule::AmbiguousRequest, request, path,
            "the request has the same constants as the request of " + Quote(inserted.first->second) +
                ", so the two cannot be told apart");
    }
}

void ZLinter::CheckConversions() {
    const IConversionContainer& conversions = *ecu_.GetConversionContainer();
    for (uint32_t i = 0; i < conversions.GetCount(); ++i) {
        const IConversion* conversion = conversions.GetConversion(i);
        if (conversion == nullptr) {
            continue;
        }
        ItemPath path;
        path.conversion = conversion->GetId();
        if (usedConversions_.count(conversion->GetId()) == 0) {
            Add(ZRule::ConversionUnused, conversion, path, "no parameter uses the conversion");
        }
        const ConversionKind named = ModelUtils().ConversionKindFromName(conversion->GetId());
        const bool table = conversion->HasTextTable();
        if (named == ConversionKind::Formula && table) {
            Add(ZRule::ConversionKind, conversion, path,
                "named as a formula, it has " + std::to_string(conversion->GetTextTableSize()) +
                    " table entries and reads as a value table");
        } else if (!table && (named == ConversionKind::ValueTable ||
                              conversion->GetType() == static_cast<uint32_t>(ConversionKind::ValueTable))) {
            Add(ZRule::ConversionKind, conversion, path,
                "a value table without entries; it reads as a formula");
        }
        if (!table && conversion->GetFactor() == 0.0) {
            Add(ZRule::FactorZero, conversion, path,
                "factor 0 turns every raw value into the offset " +
                    Platform::ShortestDoubleText(conversion->GetOffset()));
        }
        CheckTableValues(*conversion, path);
    }
}

void ZLinter::CheckTableValues(const IConversion& conversion, const ItemPath& conversionPath) {
    std::map<long long, const char*> seen;
    for (uint32_t i = 0; i < conversion.GetTextTableSize(); ++i) {
        const ITextTableElement* element = conversion.GetTextTableElement(i);
        long long number = 0;
        if (element == nullptr || !TableValueNumber(element->GetValue(), number)) {
            continue;
        }
        const auto inserted = seen.emplace(number, element->GetValue());
        if (!inserted.second) {
            ItemPath path = conversionPath;
            path.entry = element->GetValue();
            Add(ZRule::TableValue, element, path,
                "value " + Quote(element->GetValue()) + " is the same number (" + std::to_string(number) +
                    ") as value " + Quote(inserted.first->second));
        }
    }
}

void ZLinter::CheckNrcTable() {
    const INrcContainer& nrcs = *ecu_.GetNrcContainer();
    bool present[256] = {};
    for (uint32_t i = 0; i < nrcs.GetCount(); ++i) {
        if (const INrcItem* item = nrcs.GetNrc(i)) {
            present[item->GetCode()] = true;
        }
    }
    const uint32_t protocol = ecu_.GetProtocol();
    const std::vector<uint8_t> standard = ZDataModelUtilsImpl::DefaultNrcCodes(protocol);
    std::string missing;
    std::size_t count = 0;
    for (uint8_t code : standard) {
        if (!present[code]) {
            missing += (count++ == 0 ? "" : ", ") + Hex(code);
        }
    }
    if (count != 0) {
        Add(ZRule::NrcStandard, &nrcs, ItemPath{},
            "the NRC table lacks " + std::to_string(count) + " of the " + std::to_string(standard.size()) +
                " " + ModelUtils().ProtocolToName(protocol) + " standard codes: " + missing);
    }
}

}  // namespace Korvel
