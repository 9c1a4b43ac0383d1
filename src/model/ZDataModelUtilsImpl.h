// The stateless text-and-number rules of the data model (the utilities singleton).
#pragma once

#include <ZeKL/IDataModelUtils.h>

namespace Korvel {

class ZDataModelUtilsImpl : public IDataModelUtils {
public:
    ZDataModelUtilsImpl() = default;
    ~ZDataModelUtilsImpl() override = default;

    bool HexStringToBytes(ByteBuffer& out, const std::string& text) const override;
    bool HexStringToBytes(ByteBuffer& out, const char* text) const override;
    bool IsHexString(const char* text) const override;
    bool IsHexString(const std::string& text) const override;
    ParamDataType DataTypeFromName(const char* name) const override;
    std::string DataTypeToName(ParamDataType type) const override;
    bool IsTextType(ParamDataType type) const override;
    std::string MakeConversionName(const char* base, ConversionKind kind) const override;
    ConversionKind ConversionKindFromName(const char* name) const override;
    std::string StripConversionSuffix(const char* name) const override;
    uint32_t ProtocolFromName(const char* name) const override;
    std::string ProtocolToName(uint32_t protocol) const override;
    SemanticsFlags SemanticsFromString(const char* semantics) const override;
    std::string SemanticsToString(SemanticsFlags flags) const override;
    bool IsMotorola(SemanticsFlags flags) const override;
    bool HasMotorola(const char* semantics) const override;
    bool IsConst(SemanticsFlags flags) const override;
    bool HasConst(const char* semantics) const override;
    bool IsGap(SemanticsFlags flags) const override;
    bool HasGap(const char* semantics) const override;
    bool IsSid(SemanticsFlags flags) const override;
    bool HasSid(const char* semantics) const override;
    bool IsXid(SemanticsFlags flags) const override;
    bool HasXid(const char* semantics) const override;
    bool IsNumericType(ParamDataType type) const override;
    bool IsNoneType(ParamDataType type) const override;
    std::string CreateXmlForEmptyEcu(uint32_t protocol, bool withNrcTable) const override;
    // The codes of the protocol's default NRC table (protocol 1 KWP, any other UDS), ascending.
    static std::vector<uint8_t> DefaultNrcCodes(uint32_t protocol);
    bool ParseDouble(const char* text, double& out) const override;
    bool ParseFloat(const char* text, float& out) const override;
    bool ParseInt32(const char* text, int32_t& out) const override;
    bool ParseUInt32(const char* text, uint32_t& out) const override;
    bool DoubleToBytes(double value, ByteBuffer& buffer) const override;
    bool FloatToBytes(float value, ByteBuffer& buffer) const override;
    bool Int32ToBytes(int32_t value, ByteBuffer& buffer, uint32_t count) const override;
    bool UInt32ToBytes(uint32_t value, ByteBuffer& buffer, uint32_t count) const override;
    bool BytesToDouble(const ByteBuffer& buffer, double& out) const override;
    bool BytesToFloat(const ByteBuffer& buffer, float& out) const override;
    bool BytesToInt32(const ByteBuffer& buffer, int32_t& out) const override;
    bool BytesToUInt32(const ByteBuffer& buffer, uint32_t& out) const override;
    bool TextToBytes(const char* text, ByteBuffer& buffer) const override;
    bool ValueToBytes(const std::string& value, ParamDataType type, uint32_t byteLength,
                      ByteBuffer& buffer) const override;
    bool ValueToUInt32(const std::string& value, ParamDataType type, bool motorolaOrder,
                       uint32_t& out) const override;
    std::vector<std::string> SplitString(const std::string& text, char separator) const override;
};

}  // namespace Korvel
