#include "CodecOutput.h"

#include <cstdio>
#include <cstdlib>

#include "Cli.h"
#include "Console.h"
#include "Document.h"

namespace zekl {

namespace {

int HexDigit(char c) {
    if (c >= '0' && c <= '9') {
        return c - '0';
    }
    if (c >= 'a' && c <= 'f') {
        return c - 'a' + 10;
    }
    if (c >= 'A' && c <= 'F') {
        return c - 'A' + 10;
    }
    return -1;
}

bool IsBlank(char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

std::string HexNumber(uint64_t value, uint32_t bits) {
    static const char digits[] = "0123456789ABCDEF";
    uint32_t count = (bits + 3) / 4;
    if (count == 0) {
        count = 1;
    }
    std::string text(count, '0');
    for (uint32_t i = 0; i < count && i < 16; ++i) {
        text[count - 1 - i] = digits[(value >> (4 * i)) & 0xF];
    }
    return "0x" + text;
}

// A text between double quotes; quotes, backslashes and control characters escaped.
std::string QuotedText(const std::string& text) {
    std::string quoted = "\"";
    for (char c : text) {
        const unsigned char byte = static_cast<unsigned char>(c);
        if (c == '"' || c == '\\') {
            quoted += '\\';
            quoted += c;
        } else if (byte < 0x20 || byte == 0x7F) {
            char escape[8];
            std::snprintf(escape, sizeof(escape), "\\x%02X", byte);
            quoted += escape;
        } else {
            quoted += c;
        }
    }
    return quoted + "\"";
}

Json ProblemJson(Korvel::CodecProblem problem) {
    if (problem == Korvel::CodecProblem::None) {
        return nullptr;
    }
    return Korvel::CodecProblemText(problem);
}

Json RawJson(const Korvel::DecodedParam& param) {
    switch (param.rawKind) {
        case Korvel::CodecValueKind::Unsigned:
            return param.unsignedValue;
        case Korvel::CodecValueKind::Signed:
            return param.signedValue;
        case Korvel::CodecValueKind::Real:
            return param.realValue;
        case Korvel::CodecValueKind::Bytes: {
            std::string hex = HexBytes(param.bytes);
            return hex;
        }
        case Korvel::CodecValueKind::Text:
            return param.text;
        case Korvel::CodecValueKind::None:
            break;
    }
    return nullptr;
}

Json PhysicalJson(const Korvel::DecodedParam& param) {
    switch (param.physicalKind) {
        case Korvel::CodecValueKind::Real:
            return param.physical;
        case Korvel::CodecValueKind::Text:
            return param.tableText;
        default:
            return nullptr;
    }
}

}  // namespace

bool ParseHexMessage(const std::string& text, Korvel::ByteBuffer& bytes, std::string& reason) {
    bytes.clear();
    std::size_t at = 0;
    while (at < text.size()) {
        if (IsBlank(text[at])) {
            ++at;
            continue;
        }
        std::size_t end = at;
        while (end < text.size() && !IsBlank(text[end])) {
            ++end;
        }
        std::string group = text.substr(at, end - at);
        at = end;
        if (group.size() > 2 && group[0] == '0' && (group[1] == 'x' || group[1] == 'X')) {
            group.erase(0, 2);
        }
        for (char c : group) {
            if (HexDigit(c) < 0) {
                reason = "not a hex digit: '" + std::string(1, c) + "'";
                return false;
            }
        }
        if (group.size() == 1) {
            group.insert(group.begin(), '0');
        }
        if (group.size() % 2 != 0) {
            reason = "odd number of hex digits in '" + group + "'";
            return false;
        }
        for (std::size_t i = 0; i < group.size(); i += 2) {
            bytes.push_back(static_cast<uint8_t>(HexDigit(group[i]) * 16 + HexDigit(group[i + 1])));
        }
    }
    if (bytes.empty()) {
        reason = "no bytes";
        return false;
    }
    return true;
}

std::string KindName(uint32_t kind) {
    switch (kind) {
        case Korvel::MessageKindRequest:
            return "request";
        case Korvel::MessageKindPosResponse:
            return "response";
        case Korvel::MessageKindNegResponse:
            return "negative response";
        default:
            return "";
    }
}

std::string KindKey(uint32_t kind) {
    return kind == Korvel::MessageKindNegResponse ? "negative" : KindName(kind);
}

uint32_t MessageChoice::Kind() const {
    return response   ? Korvel::MessageKindPosResponse
           : negative ? Korvel::MessageKindNegResponse
                      : Korvel::MessageKindRequest;
}

void AddMessageChoice(CLI::App& app, MessageChoice& choice, CLI::Option* needs) {
    CLI::Option* response = app.add_flag("--response", choice.response, "the instance's positive response");
    CLI::Option* negative =
        app.add_flag(
               "--negative", choice.negative,
               "the instance's negative response (7F, request SID, NRC when the instance describes none)")
            ->excludes(response);
    if (needs != nullptr) {
        response->needs(needs);
        negative->needs(needs);
    }
}

std::string ShortestReal(double value) {
    char buffer[40];
    for (int precision = 1; precision <= 17; ++precision) {
        std::snprintf(buffer, sizeof(buffer), "%.*g", precision, value);
        if (std::strtod(buffer, nullptr) == value) {
            break;
        }
    }
    return buffer;
}

std::string PhysicalNumber(double value) {
    char buffer[40];
    std::snprintf(buffer, sizeof(buffer), "%.15g", value);
    return buffer;
}

std::string RawCell(const Korvel::DecodedParam& param) {
    switch (param.rawKind) {
        case Korvel::CodecValueKind::Unsigned:
            if (param.type == Korvel::ParamDataType::Bcd) {
                std::string digits = std::to_string(param.unsignedValue);
                const std::size_t width = param.bitLength / 4;
                return digits.size() < width ? std::string(width - digits.size(), '0') + digits : digits;
            }
            return HexNumber(param.unsignedValue, param.bitLength);
        case Korvel::CodecValueKind::Signed:
            return std::to_string(param.signedValue);
        case Korvel::CodecValueKind::Real:
            return ShortestReal(param.realValue);
        case Korvel::CodecValueKind::Bytes:
            return HexBytes(param.bytes);
        case Korvel::CodecValueKind::Text:
            return QuotedText(param.text);
        case Korvel::CodecValueKind::None:
            break;
    }
    return "-";
}

std::string PhysicalCell(const Korvel::DecodedParam& param) {
    switch (param.physicalKind) {
        case Korvel::CodecValueKind::Real: {
            const std::string number = PhysicalNumber(param.physical);
            return param.unit[0] != '\0' ? number + " " + param.unit : number;
        }
        case Korvel::CodecValueKind::Text:
            return param.tableText;
        default:
            return "-";
    }
}

Json DecodedJson(const std::string& input, const Korvel::DecodedMessage& message, bool recognised) {
    Json json;
    json["input"] = input;
    json["recognised"] = recognised;
    json["instance"] =
        message.instanceIndex != Korvel::InvalidIndex ? Json(message.instanceId) : Json(nullptr);
    json["kind"] = message.messageKind != 0 ? Json(KindKey(message.messageKind)) : Json(nullptr);
    json["matches"] = message.matchCount;
    json["length"] = message.length;
    json["dataLength"] = message.dataLength;
    json["clean"] = message.IsClean();
    json["problem"] = ProblemJson(message.problem);
    if (message.hasNrc) {
        json["requestSid"] = message.requestSid;
        json["nrc"] = message.nrc;
        json["nrcText"] = message.nrcText;
    }
    Json params = Json::array();
    for (const Korvel::DecodedParam& param : message.params) {
        Json entry;
        entry["id"] = param.id;
        entry["bitPos"] = param.bitPos;
        entry["bitLength"] = param.bitLength;
        entry["byte"] = param.bitPos / 8;
        entry["bit"] = param.bitPos % 8;
        entry["type"] = Korvel::GetDataModelUtils().DataTypeToName(param.type);
        entry["raw"] = RawJson(param);
        entry["physical"] = PhysicalJson(param);
        entry["unit"] = param.unit;
        entry["problem"] = ProblemJson(param.problem);
        params.push_back(std::move(entry));
    }
    json["params"] = std::move(params);
    return json;
}

std::unique_ptr<Korvel::ICodec> CompileCodec(Document& document, const char* purpose) {
    std::unique_ptr<Korvel::ICodec> codec = Korvel::CreateCodec(document.Require());
    if (!codec) {
        throw Failure(std::string("cannot ") + purpose + " with " + document.Name() + ": out of memory");
    }
    return codec;
}

}  // namespace zekl
