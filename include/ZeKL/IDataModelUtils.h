// Stateless text-and-number rules of the data model: type names, semantics words, protocol
// names, conversion names, number parsing and big-endian byte images.
#pragma once

#include <ZeKL/Types.h>

#include <string>
#include <vector>

namespace Korvel {

class ZEKL_API IDataModelUtils {
public:
    virtual ~IDataModelUtils();
    // Hex text ("0x12 0x3", "ABC") to bytes; false and `out` untouched on failure.
    virtual bool HexStringToBytes(ByteBuffer& out, const std::string& text) const = 0;
    virtual bool HexStringToBytes(ByteBuffer& out, const char* text) const = 0;
    // True for a non-empty text of hex digits only.
    virtual bool IsHexString(const char* text) const = 0;
    virtual bool IsHexString(const std::string& text) const = 0;
    // Type from the first two characters of the name; Undefined when none matches.
    virtual ParamDataType DataTypeFromName(const char* name) const = 0;
    // Name of the type; empty for an unknown value.
    virtual std::string DataTypeToName(ParamDataType type) const = 0;
    virtual bool IsTextType(ParamDataType type) const = 0;
    virtual std::string MakeConversionName(const char* base, ConversionKind kind) const = 0;
    // Neither (0) when the name carries no known suffix.
    virtual ConversionKind ConversionKindFromName(const char* name) const = 0;
    virtual std::string StripConversionSuffix(const char* name) const = 0;
    // ProtocolKwp when the name contains "KWP", else ProtocolUds.
    virtual uint32_t ProtocolFromName(const char* name) const = 0;
    virtual std::string ProtocolToName(uint32_t protocol) const = 0;
    virtual SemanticsFlags SemanticsFromString(const char* semantics) const = 0;
    virtual std::string SemanticsToString(SemanticsFlags flags) const = 0;
    virtual bool IsMotorola(SemanticsFlags flags) const = 0;
    virtual bool HasMotorola(const char* semantics) const = 0;
    virtual bool IsConst(SemanticsFlags flags) const = 0;
    virtual bool HasConst(const char* semantics) const = 0;
    virtual bool IsGap(SemanticsFlags flags) const = 0;
    virtual bool HasGap(const char* semantics) const = 0;
    virtual bool IsSid(SemanticsFlags flags) const = 0;
    virtual bool HasSid(const char* semantics) const = 0;
    virtual bool IsXid(SemanticsFlags flags) const = 0;
    virtual bool HasXid(const char* semantics) const = 0;
    virtual bool IsNumericType(ParamDataType type) const = 0;
    virtual bool IsNoneType(ParamDataType type) const = 0;
    // Text of the smallest document for an empty ECU (lines end in CR LF).
    virtual std::string CreateXmlForEmptyEcu(uint32_t protocol, bool withNrcTable) const = 0;
    // False for null or empty text; `out` untouched on failure.
    virtual bool ParseDouble(const char* text, double& out) const = 0;
    virtual bool ParseFloat(const char* text, float& out) const = 0;
    // False for null, empty or out-of-range text (base detected from "0x" / "0").
    virtual bool ParseInt32(const char* text, int32_t& out) const = 0;
    virtual bool ParseUInt32(const char* text, uint32_t& out) const = 0;
    // Big-endian images; the buffer grows and never shrinks.
    virtual bool DoubleToBytes(double value, ByteBuffer& buffer) const = 0;
    virtual bool FloatToBytes(float value, ByteBuffer& buffer) const = 0;
    // False for a count of 0 or above 4.
    virtual bool Int32ToBytes(int32_t value, ByteBuffer& buffer, uint32_t count) const = 0;
    virtual bool UInt32ToBytes(uint32_t value, ByteBuffer& buffer, uint32_t count) const = 0;
    // False unless the buffer has exactly 8 (double), 4 (float) or 1 to 4 (integers) bytes.
    virtual bool BytesToDouble(const ByteBuffer& buffer, double& out) const = 0;
    virtual bool BytesToFloat(const ByteBuffer& buffer, float& out) const = 0;
    virtual bool BytesToInt32(const ByteBuffer& buffer, int32_t& out) const = 0;
    virtual bool BytesToUInt32(const ByteBuffer& buffer, uint32_t& out) const = 0;
    // Copies the characters to the buffer's front; false for null.
    virtual bool TextToBytes(const char* text, ByteBuffer& buffer) const = 0;
    // A parameter value text as its big-endian image of byteLength bytes; false on failure.
    virtual bool ValueToBytes(const std::string& value, ParamDataType type, uint32_t byteLength,
                              ByteBuffer& buffer) const = 0;
    virtual bool ValueToUInt32(const std::string& value, ParamDataType type, bool motorolaOrder,
                               uint32_t& out) const = 0;
    virtual std::vector<std::string> SplitString(const std::string& text, char separator) const = 0;
};

}  // namespace Korvel
