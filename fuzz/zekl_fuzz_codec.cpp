// The message codec on arbitrary bytes, with the two sample descriptions: recognition and
// decoding never crash, agree with each other, and a message that decodes clean encodes back
// to the same bytes from its raw values.
//
// Input: the first byte picks the description (bit 7: KWP, else UDS); the whole rest is
// recognised and decoded; bytes 1 and 2 also pick an instance and a message kind (0 to 3, 0
// being no kind) that the bytes after them are decoded as.
#include <ZeKL/ZeKL.h>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#ifndef ZEKL_EXAMPLES_DIR
#error "ZEKL_EXAMPLES_DIR must name the folder of the sample documents"
#endif

namespace {

using namespace Korvel;

struct Sample {
    std::unique_ptr<IEcu> ecu;
    std::unique_ptr<ICodec> codec;
};

Sample Load(const char* name) {
    Sample sample;
    const std::string path = std::string(ZEKL_EXAMPLES_DIR) + "/" + name;
    sample.ecu = GetKLReader().ReadFile(path.c_str(), "");
    if (!sample.ecu) {
        std::fprintf(stderr, "cannot read %s\n", path.c_str());
        std::abort();
    }
    sample.codec = CreateCodec(*sample.ecu);
    if (!sample.codec) {
        std::abort();
    }
    return sample;
}

void Require(bool condition, const char* what) {
    if (!condition) {
        std::fprintf(stderr, "codec property broken: %s\n", what);
        std::abort();
    }
}

std::string HexText(const ByteBuffer& bytes) {
    static const char digits[] = "0123456789ABCDEF";
    std::string text;
    for (uint8_t byte : bytes) {
        text += digits[byte >> 4];
        text += digits[byte & 0xF];
    }
    return text;
}

// The raw value of a decoded parameter in the form encode takes with "raw".
bool RawValue(const DecodedParam& param, EncodeValue& value) {
    value.id = param.id;
    value.raw = true;
    switch (param.rawKind) {
        case CodecValueKind::Unsigned:
            value.text = std::to_string(param.unsignedValue);
            return true;
        case CodecValueKind::Signed:
            value.text = std::to_string(param.signedValue);
            return true;
        case CodecValueKind::Bytes:
            value.text = HexText(param.bytes);
            return true;
        case CodecValueKind::Text:
            value.text = param.text;
            return param.type != ParamDataType::Ucs2;  // unpaired surrogates are replaced
        default:
            return false;
    }
}

void CheckReencode(const ICodec& codec, const DecodedMessage& decoded, const uint8_t* data,
                   std::size_t size) {
    std::vector<EncodeValue> values;
    for (const DecodedParam& param : decoded.params) {
        EncodeValue value;
        if (!RawValue(param, value)) {
            return;
        }
        values.push_back(value);
    }
    ByteBuffer message(data, data + size);
    CodecError error;
    Require(codec.Encode(decoded.instanceIndex, decoded.messageKind, values, message, error),
            "a clean message encodes from its raw values");
    Require(message == ByteBuffer(data, data + size), "encoding the raw values gives the message back");
}

void CheckAny(const ICodec& codec, const uint8_t* data, std::size_t size) {
    Recognition recognition;
    const bool recognised = codec.Recognise(data, size, recognition);
    Require(recognised == recognition.recognised, "Recognise answers as its result says");
    DecodedMessage decoded;
    const bool clean = codec.DecodeAny(data, size, decoded);
    Require(!clean || recognised, "a clean decode was recognised");
    Require(clean == (recognised && decoded.IsClean()),
            "DecodeAny is true exactly for clean, recognised data");
    if (!recognised) {
        Require(decoded.problem == CodecProblem::NotRecognised, "unrecognised data says so");
        return;
    }
    Require(
        decoded.instanceIndex == recognition.instanceIndex && decoded.messageKind == recognition.messageKind,
        "DecodeAny decodes the message Recognise names");
    Require(recognition.instanceIndex < codec.GetInstanceCount(), "the instance exists");
    Require(recognition.matchCount >= 1, "the chosen message counts among the matches");
    for (const DecodedParam& param : decoded.params) {
        Require(
            param.problem != CodecProblem::ConstMismatch || recognition.messageKind == MessageKindNegResponse,
            "a recognised request or response matches its constants");
    }
    if (clean && recognition.messageKind != MessageKindNegResponse) {
        CheckReencode(codec, decoded, data, size);
    }
}

void CheckGiven(const ICodec& codec, uint32_t instance, uint32_t kind, const uint8_t* data,
                std::size_t size) {
    DecodedMessage decoded;
    const bool clean = codec.Decode(instance, kind, data, size, decoded);
    Require(clean == decoded.IsClean(), "Decode is true exactly for a clean message");
    if (decoded.problem == CodecProblem::NoSuchMessage) {
        Require(!codec.HasMessage(instance, kind), "no such message only when there is none");
        return;
    }
    Require(decoded.dataLength == size, "the data's length is reported");
    uint32_t errors = decoded.problem != CodecProblem::None ? 1 : 0;
    for (const DecodedParam& param : decoded.params) {
        errors += param.problem != CodecProblem::None && !IsCodecWarning(param.problem) ? 1 : 0;
        if (param.problem == CodecProblem::BeyondData) {
            Require(size < decoded.length, "a parameter beyond the data means short data");
        }
    }
    Require(errors == decoded.errorCount, "the error count counts the problems");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const Sample uds = Load("uds_ecu.xml");
    static const Sample kwp = Load("kwp_ecu.xml");
    if (size == 0) {
        return 0;
    }
    const ICodec& codec = (data[0] & 0x80) != 0 ? *kwp.codec : *uds.codec;
    CheckAny(codec, data + 1, size - 1);
    if (size >= 3) {
        const uint32_t instance = data[1] % (codec.GetInstanceCount() + 1);
        CheckGiven(codec, instance, data[2] % 4, data + 3, size - 3);
    }
    return 0;
}
