// Results and inputs of the message codec (ICodec): decoded parameters and messages, the
// recognition of a message, values to encode, and the layout of a message. An addition to
// the original design.
#pragma once

#include <ZeKL/Types.h>

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace Korvel {

// What the codec found wrong. CodecProblemText gives a short text for each.
enum class CodecProblem : uint32_t {
    None = 0,
    // A parameter, while decoding.
    BeyondData = 1,         // its bits reach past the end of the data
    ConstMismatch = 2,      // a CONST parameter's bits differ from its value
    NoTableEntry = 3,       // its value table has no entry for the raw value
    BadBcdDigit = 4,        // a BCD nibble above 9
    UnknownConversion = 5,  // a warning: the conversion id names no conversion; the raw value stands
    // A parameter's description (found when the codec is built; reported by every decode).
    BadLayout = 6,                // a length the type cannot have, or a long field not on whole bytes
    UnknownType = 7,              // the type name names no data type
    BadConstant = 8,              // a CONST value without a byte image that fits its bits
    ConversionNotApplicable = 9,  // a formula on a text or byte-string parameter
    // A message.
    ShortData = 10,      // the data ends before the message's last parameter
    TrailingData = 11,   // bytes after the message's last parameter
    NoSuchMessage = 12,  // the instance has no message of that kind (or there is no such instance)
    NotRecognised = 13,  // no message of the description matches the data
    // Encoding a value.
    MissingValue = 14,      // a parameter that is neither CONST nor GAP was given no value
    BadValue = 15,          // the value text is not of the parameter's form
    OutOfRange = 16,        // the raw value does not fit the parameter's bits
    FactorZero = 17,        // a formula with factor 0 cannot be inverted
    NoTableText = 18,       // no entry of the value table has that text
    UnknownParameter = 19,  // a value names no parameter of the message
    DuplicateValue = 20,    // two values name the same parameter
    // Anything else (memory exhaustion).
    Failure = 21,
};

// How a decoded value is held.
enum class CodecValueKind : uint32_t {
    None = 0,      // no value (the bits could not be read, or there is no physical value)
    Unsigned = 1,  // `unsignedValue`
    Signed = 2,    // `signedValue`
    Real = 3,      // `realValue`
    Bytes = 4,     // `bytes` (raw bytes of a `none` parameter)
    Text = 5,      // `text` (UTF-8; for the physical value of a table: `tableText`)
};

// One parameter of a decoded message. The pointers point into the codec and stay valid as
// long as the codec lives.
struct DecodedParam {
    const char* id = "";     // the parameter's id
    uint32_t bitPos = 0;     // first bit in the message
    uint32_t bitLength = 0;  // number of bits
    ParamDataType type = ParamDataType::Undefined;
    CodecValueKind rawKind = CodecValueKind::None;
    uint64_t unsignedValue = 0;  // raw unsigned, bcd (as its decimal number) and `none` up to 64 bits
    int64_t signedValue = 0;     // raw signed (two's complement of bitLength bits)
    double realValue = 0.0;      // raw fp and double
    ByteBuffer bytes;            // the field's bytes (`none`: most significant first; texts: as sent)
    std::string text;            // raw ascii, utf8 or ucs2 text as UTF-8, padding removed
    CodecValueKind physicalKind = CodecValueKind::None;  // Real (number with unit), Text (table) or None
    double physical = 0.0;       // raw x factor + offset, or the raw number itself without conversion
    const char* unit = "";       // the parameter's unit
    const char* tableText = "";  // the value table's text for the raw value
    CodecProblem problem = CodecProblem::None;
};

// A decoded message.
struct DecodedMessage {
    uint32_t instanceIndex = InvalidIndex;      // index of the instance in the description
    const char* instanceId = "";                // its id ("" when none)
    uint32_t messageKind = 0;                   // MessageKindRequest, ...PosResponse or ...NegResponse
    std::vector<DecodedParam> params;           // in the order of the description
    uint32_t length = 0;                        // bytes the message's parameters cover
    uint32_t dataLength = 0;                    // bytes given
    CodecProblem problem = CodecProblem::None;  // ShortData, TrailingData, NoSuchMessage, NotRecognised
    uint32_t errorCount = 0;    // problems of the message and its parameters, warnings not counted
    uint32_t warningCount = 0;  // UnknownConversion
    uint32_t constBits = 0;     // constant bits that matched when the message was recognised
    uint32_t matchCount = 0;    // messages that matched as well (1: unambiguous), when recognised
    // Negative responses (7F, request SID, NRC).
    bool hasNrc = false;
    uint8_t requestSid = 0;
    uint8_t nrc = 0;
    const char* nrcText = "";  // the text of the ECU's NRC table; "" when the table has no such code
    // Not part of the result: parameters of earlier, longer messages, kept with their storage
    // so that decoding messages of different shapes in turn allocates nothing.
    std::vector<DecodedParam> spareParams;

    // True when neither the message nor a parameter has an error (warnings allowed).
    bool IsClean() const { return errorCount == 0; }
};

// Which message some bytes are.
struct Recognition {
    bool recognised = false;
    uint32_t instanceIndex = InvalidIndex;
    const char* instanceId = "";  // points into the codec
    uint32_t messageKind = 0;     // MessageKind...; MessageKindNegResponse also for an unknown SID
    uint32_t constBits = 0;       // constant bits that matched
    uint32_t matchCount = 0;      // messages that matched as well as the chosen one
};

// A value to encode: the natural (physical) form unless `raw`; text, or a number when
// `isNumber`.
struct EncodeValue {
    std::string id;
    std::string text;
    double number = 0.0;
    bool isNumber = false;
    bool raw = false;

    // A value in text form (never fails).
    static EncodeValue Text(std::string id, std::string text, bool raw = false) {
        EncodeValue value;
        value.id = std::move(id);
        value.text = std::move(text);
        value.raw = raw;
        return value;
    }
    // A value as a number (never fails; texts and bytes refuse numbers when encoded).
    static EncodeValue Number(std::string id, double number, bool raw = false) {
        EncodeValue value;
        value.id = std::move(id);
        value.number = number;
        value.isNumber = true;
        value.raw = raw;
        return value;
    }
};

// Why an encode failed.
struct CodecError {
    CodecProblem problem = CodecProblem::None;
    std::string paramId;  // the parameter concerned; empty for the message as a whole
    std::string message;  // one line that names the parameter
};

// One field of a message layout.
struct LayoutField {
    const char* id = "";
    uint32_t bitPos = 0;
    uint32_t bitLength = 0;
    ParamDataType type = ParamDataType::Undefined;
    bool motorola = false;
    bool isConst = false;
    bool isGap = false;
    CodecProblem problem = CodecProblem::None;  // a problem of the description, as decoding reports it
};

// Owner values of MessageLayout::bitOwners.
constexpr int32_t LayoutBitFree = -1;     // no parameter covers the bit
constexpr int32_t LayoutBitOverlap = -2;  // several parameters cover the bit

// Where the parameters of a message lie.
struct MessageLayout {
    uint32_t length = 0;  // bytes
    std::vector<LayoutField> fields;
    // One entry per bit of the message, index byte x 8 + bit (bit 0 the least significant bit
    // of its byte): the index into `fields`, LayoutBitFree or LayoutBitOverlap.
    std::vector<int32_t> bitOwners;
};

// Short English text of a problem ("constant mismatch", ...); "" for an unknown value.
ZEKL_API const char* CodecProblemText(CodecProblem problem);

// True for the problems that are only warnings (UnknownConversion).
ZEKL_API bool IsCodecWarning(CodecProblem problem);

}  // namespace Korvel
