// The message codec: decodes, encodes and recognises the diagnostic messages of one ECU with
// its description. An addition to the original design.
//
// Bits of a parameter
// - A parameter covers bit length L bits from bit position P of the message: byte B = P / 8,
//   bit offset O = P % 8 counted from the least significant bit of byte B (as ODX's
//   BIT-POSITION counts).
// - Extraction takes the ceil((O + L) / 8) bytes from byte B, reads them as one unsigned
//   integer in the parameter's byte order (MOTOROLA: first byte most significant; otherwise
//   first byte least significant), shifts it right by O and keeps the low L bits. Insertion is
//   the exact inverse and leaves every other bit of the message untouched.
// - Only byte strings (`none`, `ascii`, `utf8`, `ucs2`) may have more than 64 bits, and then
//   they start on a byte and cover whole bytes; anything else is BadLayout for that parameter.
// - Types: `unsigned`; `signed` (two's complement of L bits); `bcd` (packed, high nibble first,
//   each nibble 0-9, L a multiple of 4); `fp` (IEEE binary32, L = 32); `double` (binary64,
//   L = 64); `ascii` and `utf8` (the field's bytes as sent; trailing zero bytes are padding);
//   `ucs2` (UTF-16 code units in the parameter's byte order, L a multiple of 16); `none` (raw
//   bytes: the extracted value most significant byte first, as the value text of the
//   description writes them; a long field in the parameter's byte order). The type comes from
//   the type name by the library's rule (IDataModelUtils::DataTypeFromName), so "undefined"
//   reads as unsigned.
// - Conversions: a formula gives physical = raw x factor + offset. A value table gives the text
//   of the entry whose value equals the raw value: numerically where the entry's value is a
//   number (it starts with a digit, or a minus and a digit, and reads by ParseUInt32 or
//   ParseInt32 for integer raw values, ParseDouble for fp and double), so "1", "01" and "0x01"
//   all match raw 1; otherwise as exact text against the raw value in decimal (or the raw text
//   of a text parameter). A conversion is a value table when it has entries or its id or type
//   says so; otherwise it is a formula. A conversion id that names no conversion decodes to the
//   raw value with the warning UnknownConversion.
// - Encoding inverts both: raw = (physical - offset) / factor, rounded to the nearest integer
//   for integer types, range-checked for L bits, FactorZero for factor 0; a table's text gives
//   its entry's value. Number texts of values to encode must be numbers through to their end.
// - A CONST parameter's expected bits are its value's byte image as IParam::GetValueImage gives
//   it (transmission order), read by the rule above; a value without an image that fits is
//   BadConstant.
//
// Recognition
// - A request or positive response matches data when every CONST parameter matches (messages
//   without constants are never recognised). Among several matches the one with the most
//   constant bits wins, then the one whose length equals the data's, then the first in the
//   description (requests before responses); matchCount says how many were equally good.
// - Data of three or more bytes starting with 7F is a negative response (7F, request SID, NRC):
//   it is given to the first instance whose request's SID parameter (8 bits at bit 0, CONST)
//   has that SID, decoded with that instance's negative response (or the plain 7F, SID, NRC
//   shape when it has none), and its NRC comes with the text of the ECU's NRC table.
// - Candidates are found through an index by the bytes of each message's constant prefix, so
//   recognising among tens of thousands of instances does not scan them.
//
// Snapshot: the codec copies what it needs from the description when it is created (plans of
// every message: field positions, types, conversions, constants, texts, the NRC table) and does
// not refer to the model afterwards. Editing the model does not change a codec made before;
// create a new codec after edits. The model may be destroyed while the codec is in use.
//
// The codec is immutable after creation: its const operations may run concurrently from
// several threads, each with its own result objects. No exception leaves it.
#pragma once

#include <ZeKL/CodecTypes.h>
#include <ZeKL/IEcu.h>

#include <memory>

namespace Korvel {

class ZEKL_API ICodec {
public:
    virtual ~ICodec();

    // Number of service instances in the snapshot.
    virtual uint32_t GetInstanceCount() const = 0;
    // Id of the instance at index; "" when the index is out of range.
    virtual const char* GetInstanceId(uint32_t index) const = 0;
    // Index of the instance with that id; InvalidIndex when there is none.
    virtual uint32_t FindInstance(const char* id) const = 0;
    // True when the instance has a message of that kind; false for a bad index or kind.
    virtual bool HasMessage(uint32_t instance, uint32_t messageKind) const = 0;

    // Which message the data is; false (out.recognised false) when none matches.
    virtual bool Recognise(const uint8_t* data, std::size_t size, Recognition& out) const = 0;

    // Decodes the data as the given message into `out`, reusing its storage (no allocation
    // once `out` has held a message of that shape). A negative response of an instance that
    // describes none (or an empty one) is decoded by the plain 7F, SID, NRC shape. False when
    // the message or any parameter has an error (problem fields say which; NoSuchMessage for a
    // bad instance or kind).
    virtual bool Decode(uint32_t instance, uint32_t messageKind, const uint8_t* data, std::size_t size,
                        DecodedMessage& out) const = 0;
    // Recognises, then decodes. False when not recognised (problem NotRecognised; a 7F message
    // is still decoded by its shape, with its NRC) or when the decode has an error.
    virtual bool DecodeAny(const uint8_t* data, std::size_t size, DecodedMessage& out) const = 0;

    // Writes the message's parameters into `message`, grown with zero bytes to the message's
    // length when shorter; bits outside the parameters keep their values. CONST parameters fill
    // themselves and GAP parameters are zero unless a value is given for them; every other
    // parameter needs a value (the plain negative shape takes its SIDRQ from the request). False with `error`
    // set (naming the parameter) and `message` unchanged on any failure.
    virtual bool Encode(uint32_t instance, uint32_t messageKind, const std::vector<EncodeValue>& values,
                        ByteBuffer& message, CodecError& error) const = 0;

    // Where the message's parameters lie; false (out emptied) when there is no such message.
    virtual bool GetLayout(uint32_t instance, uint32_t messageKind, MessageLayout& out) const = 0;
};

// A codec for the ECU's description (a snapshot, see above); null only when memory runs out.
ZEKL_API std::unique_ptr<ICodec> CreateCodec(const IEcu& ecu);

}  // namespace Korvel
