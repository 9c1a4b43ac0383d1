#include "model/ZDataModelUtilsImpl.h"

#include "platform/CNumbers.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <limits>

namespace Korvel {

namespace {

constexpr const char* kHexDigits = "0123456789abcdefABCDEF";
constexpr const char* kValueTableSuffix = "_ValueTable";
constexpr const char* kFormulaSuffix = "_Formula";
constexpr const char* kXmlDeclaration = "<?xml version=\"1.0\" encoding=\"Windows-1252\"?>";
constexpr const char* kLineEnd = "\r\n";

struct NrcText {
    unsigned code;
    const char* text;
};

// The texts are kept exactly as documents and callers have always seen them ("to low" and the
// mixed capitals included).
constexpr NrcText kKwpNrcTable[] = {
    {16, "General reject"},
    {17, "Service not supported"},
    {18, "Sub-function not supported - invalid format"},
    {33, "Busy - repeat request"},
    {34, "Conditions not correct or request sequence error"},
    {35, "Routine not complete"},
    {49, "Request out of range"},
    {51, "Security access denied - security access requested"},
    {53, "Invalid key"},
    {54, "Exceed number of attempts"},
    {55, "Required time delay not expired"},
    {80, "Download not accepted"},
    {81, "Improper upload type"},
    {82, "Can not upload from specified address"},
    {83, "Can not upload number of Bytes requested"},
    {113, "Transfer suspended"},
    {114, "Transfer aborted"},
    {116, "Illegal address in block transfer"},
    {117, "Illegal Byte count in block transfer"},
    {118, "Illegal block transfer type"},
    {119, "Block transfer data checksum error"},
    {120, "Request correctly received - response pending"},
    {121, "Incorrect Byte count during block transfer"},
    {128, "Service not supported in active session"},
};

constexpr NrcText kUdsNrcTable[] = {
    {16, "General reject"},
    {17, "Service not supported"},
    {18, "Sub-function not supported"},
    {19, "Incorrect Message Length or Invalid Format"},
    {20, "Response too long"},
    {33, "Busy - repeat request"},
    {34, "Conditions not correct"},
    {36, "Request Sequence Error"},
    {37, "No response from subnet component"},
    {38, "Failure prevents execution of requested action"},
    {49, "Request out of range"},
    {51, "Security access denied"},
    {53, "Invalid key"},
    {54, "Exceed number of attempts"},
    {55, "Required time delay not expired"},
    {112, "Upload Download not accepted"},
    {113, "Transfer suspended"},
    {114, "General Programming Failure"},
    {115, "Wrong Block Sequence Counter"},
    {120, "Request correctly received - response pending"},
    {126, "Sub-function not supported in active session"},
    {127, "Service not supported in active session"},
    {129, "RPM too high"},
    {130, "RPM too low"},
    {131, "Engine is running"},
    {132, "Engine is not running"},
    {133, "Engine Run time too low"},
    {134, "Temperature too high"},
    {135, "Temperature too low"},
    {136, "Vehicle speed too high"},
    {137, "Vehicle speed to low"},
    {138, "Throttle/Pedal too high"},
    {139, "Throttle/Pedal too low"},
    {140, "Transmission range not in neutral"},
    {141, "Transmission range not in gear"},
    {143, "Brake Switch(es) not closed"},
    {144, "Shifter level not in park"},
    {145, "Torque converter clutch locked"},
    {146, "Voltage too high"},
    {147, "Voltage too low"},
};

bool Contains(const char* text, const char* word) {
    return text != nullptr && std::strstr(text, word) != nullptr;
}

bool IsEmpty(const char* text) {
    return text == nullptr || *text == '\0';
}

int HexDigitValue(char c) {
    if (c >= '0' && c <= '9') {
        return c - '0';
    }
    if (c >= 'a' && c <= 'f') {
        return c - 'a' + 10;
    }
    return c - 'A' + 10;
}

// strtoll with automatic base detection; trailing characters are deliberately ignored, as
// documents have always relied on ("12abc" reads as 12). False only when the number does not
// fit 64 bits.
bool ParseWithBaseDetection(const char* text, long long& value) {
    errno = 0;
    char* end = nullptr;
    const long long parsed = std::strtoll(text, &end, 0);
    if (errno == ERANGE) {
        return false;
    }
    value = parsed;
    return true;
}

// Truncation toward zero into the unsigned 32-bit range. NaN, infinities and values outside
// the range fail instead of converting (which would be undefined behaviour).
bool TruncateToUInt32(double value, uint32_t& out) {
    if (!(value > -1.0 && value < 4294967296.0)) {
        return false;
    }
    out = static_cast<uint32_t>(value);
    return true;
}

void GrowTo(ByteBuffer& buffer, std::size_t size) {
    if (buffer.size() < size) {
        buffer.resize(size, 0);
    }
}

// Writes the low `count` bytes of value, most significant first, to the buffer's front.
void WriteBigEndian(uint64_t value, ByteBuffer& buffer, uint32_t count) {
    GrowTo(buffer, count);
    for (uint32_t i = 0; i < count; ++i) {
        buffer[i] = static_cast<uint8_t>(value >> (8u * (count - 1u - i)));
    }
}

uint64_t ReadBigEndian(const ByteBuffer& buffer) {
    uint64_t value = 0;
    for (uint8_t byte : buffer) {
        value = (value << 8u) | byte;
    }
    return value;
}

void AppendNrcTable(std::string& xml, const NrcText* begin, const NrcText* end) {
    for (const NrcText* entry = begin; entry != end; ++entry) {
        xml += "  <MAP nrc=\"";
        xml += std::to_string(entry->code);
        xml += "\" text=\"";
        xml += entry->text;
        xml += "\"/>";
        xml += kLineEnd;
    }
}

}  // namespace

bool ZDataModelUtilsImpl::HexStringToBytes(ByteBuffer& out, const std::string& text) const {
    if (text.empty()) {
        return false;
    }
    std::string hex = text;
    // Only the lower-case prefix is removed; "0X" stays and fails the digit test below.
    std::size_t pos = 0;
    while (hex.size() >= 2 && (pos = hex.find("0x")) != std::string::npos) {
        hex.erase(pos, 2);
    }
    if (hex.find(' ') != std::string::npos) {
        const std::vector<std::string> pieces = SplitString(hex, ' ');
        if (pieces.size() >= 2) {
            std::string joined;
            for (const std::string& piece : pieces) {
                if (piece.size() > 2) {
                    return false;
                }
                if (piece.size() < 2) {
                    joined += '0';
                }
                joined += piece;
            }
            hex = joined;
        }
    }
    if (!IsHexString(hex)) {
        return false;
    }
    if (hex.size() % 2 != 0) {
        hex.insert(hex.begin(), '0');
    }
    ByteBuffer bytes;
    bytes.reserve(hex.size() / 2);
    for (std::size_t i = 0; i < hex.size(); i += 2) {
        bytes.push_back(static_cast<uint8_t>(HexDigitValue(hex[i]) * 16 + HexDigitValue(hex[i + 1])));
    }
    out = std::move(bytes);
    return true;
}

bool ZDataModelUtilsImpl::HexStringToBytes(ByteBuffer& out, const char* text) const {
    if (text == nullptr) {
        return false;
    }
    return HexStringToBytes(out, std::string(text));
}

bool ZDataModelUtilsImpl::IsHexString(const char* text) const {
    if (IsEmpty(text)) {
        return false;
    }
    return IsHexString(std::string(text));
}

bool ZDataModelUtilsImpl::IsHexString(const std::string& text) const {
    return !text.empty() && text.find_first_not_of(kHexDigits) == std::string::npos;
}

// Only the first two characters decide, on purpose: documents written with "undefined" have
// always been read back as unsigned, and "float" as fp.
ParamDataType ZDataModelUtilsImpl::DataTypeFromName(const char* name) const {
    if (IsEmpty(name)) {
        return ParamDataType::Undefined;
    }
    switch (name[0]) {
        case 'a':
            return ParamDataType::Ascii;
        case 'b':
            return ParamDataType::Bcd;
        case 'd':
            return ParamDataType::Double;
        case 'f':
            return ParamDataType::Fp;
        case 'n':
            return ParamDataType::None;
        case 's':
            return ParamDataType::Signed;
        case 'u':
            switch (name[1]) {
                case 'c':
                    return ParamDataType::Ucs2;
                case 'n':
                    return ParamDataType::Unsigned;
                case 't':
                    return ParamDataType::Utf8;
                default:
                    return ParamDataType::Undefined;
            }
        default:
            return ParamDataType::Undefined;
    }
}

std::string ZDataModelUtilsImpl::DataTypeToName(ParamDataType type) const {
    switch (type) {
        case ParamDataType::Undefined:
            return "undefined";
        case ParamDataType::None:
            return "none";
        case ParamDataType::Unsigned:
            return "unsigned";
        case ParamDataType::Signed:
            return "signed";
        case ParamDataType::Bcd:
            return "bcd";
        case ParamDataType::Fp:
            return "fp";
        case ParamDataType::Double:
            return "double";
        case ParamDataType::Ascii:
            return "ascii";
        case ParamDataType::Ucs2:
            return "ucs2";
        case ParamDataType::Utf8:
            return "utf8";
    }
    return std::string();
}

bool ZDataModelUtilsImpl::IsTextType(ParamDataType type) const {
    return type == ParamDataType::Ascii || type == ParamDataType::Ucs2 || type == ParamDataType::Utf8;
}

std::string ZDataModelUtilsImpl::MakeConversionName(const char* base, ConversionKind kind) const {
    std::string name = base == nullptr ? std::string() : std::string(base);
    if (kind == ConversionKind::ValueTable) {
        name += kValueTableSuffix;
    } else if (kind == ConversionKind::Formula) {
        name += kFormulaSuffix;
    }
    return name;
}

ConversionKind ZDataModelUtilsImpl::ConversionKindFromName(const char* name) const {
    if (Contains(name, kValueTableSuffix)) {
        return ConversionKind::ValueTable;
    }
    if (Contains(name, kFormulaSuffix)) {
        return ConversionKind::Formula;
    }
    return ConversionKind::Neither;
}

std::string ZDataModelUtilsImpl::StripConversionSuffix(const char* name) const {
    if (name == nullptr) {
        return std::string();
    }
    const std::string text(name);
    std::size_t pos = text.find(kValueTableSuffix);
    if (pos == std::string::npos) {
        pos = text.find(kFormulaSuffix);
    }
    return pos == std::string::npos ? text : text.substr(0, pos);
}

uint32_t ZDataModelUtilsImpl::ProtocolFromName(const char* name) const {
    return Contains(name, "KWP") ? ProtocolKwp : ProtocolUds;
}

std::string ZDataModelUtilsImpl::ProtocolToName(uint32_t protocol) const {
    return protocol == ProtocolKwp ? "KWP" : "UDS";
}

SemanticsFlags ZDataModelUtilsImpl::SemanticsFromString(const char* semantics) const {
    SemanticsFlags flags = 0;
    if (HasSid(semantics)) {
        flags |= SemanticsSid;
    }
    if (HasXid(semantics)) {
        flags |= SemanticsXid;
    }
    if (HasConst(semantics)) {
        flags |= SemanticsConst;
    }
    if (HasMotorola(semantics)) {
        flags |= SemanticsMotorola;
    }
    if (HasGap(semantics)) {
        flags |= SemanticsGap;
    }
    return flags;
}

std::string ZDataModelUtilsImpl::SemanticsToString(SemanticsFlags flags) const {
    std::string text;
    if (IsSid(flags)) {
        text += "SID ";
    }
    if (IsXid(flags)) {
        text += "XID ";
    }
    if (IsConst(flags)) {
        text += "CONST ";
    }
    if (IsMotorola(flags)) {
        text += "MOTOROLA ";
    }
    if (IsGap(flags)) {
        text += "GAP";
    }
    const std::size_t last = text.find_last_not_of(" \t\r\n");
    text.erase(last == std::string::npos ? 0 : last + 1);
    return text;
}

bool ZDataModelUtilsImpl::IsMotorola(SemanticsFlags flags) const {
    return (flags & SemanticsMotorola) != 0;
}

bool ZDataModelUtilsImpl::HasMotorola(const char* semantics) const {
    return Contains(semantics, "MOTOROLA");
}

bool ZDataModelUtilsImpl::IsConst(SemanticsFlags flags) const {
    return (flags & SemanticsConst) != 0;
}

bool ZDataModelUtilsImpl::HasConst(const char* semantics) const {
    return Contains(semantics, "CONST");
}

bool ZDataModelUtilsImpl::IsGap(SemanticsFlags flags) const {
    return (flags & SemanticsGap) != 0;
}

bool ZDataModelUtilsImpl::HasGap(const char* semantics) const {
    return Contains(semantics, "GAP");
}

bool ZDataModelUtilsImpl::IsSid(SemanticsFlags flags) const {
    return (flags & SemanticsSid) != 0;
}

bool ZDataModelUtilsImpl::HasSid(const char* semantics) const {
    return Contains(semantics, "SID");
}

bool ZDataModelUtilsImpl::IsXid(SemanticsFlags flags) const {
    return (flags & SemanticsXid) != 0;
}

bool ZDataModelUtilsImpl::HasXid(const char* semantics) const {
    return Contains(semantics, "XID");
}

bool ZDataModelUtilsImpl::IsNumericType(ParamDataType type) const {
    return type == ParamDataType::Unsigned || type == ParamDataType::Signed || type == ParamDataType::Fp ||
           type == ParamDataType::Double;
}

bool ZDataModelUtilsImpl::IsNoneType(ParamDataType type) const {
    return type == ParamDataType::None;
}

std::vector<uint8_t> ZDataModelUtilsImpl::DefaultNrcCodes(uint32_t protocol) {
    const auto codes = [](const NrcText* begin, const NrcText* end) {
        std::vector<uint8_t> result;
        for (const NrcText* at = begin; at != end; ++at) {
            result.push_back(static_cast<uint8_t>(at->code));
        }
        return result;
    };
    return protocol == ProtocolKwp ? codes(std::begin(kKwpNrcTable), std::end(kKwpNrcTable))
                                   : codes(std::begin(kUdsNrcTable), std::end(kUdsNrcTable));
}

std::string ZDataModelUtilsImpl::CreateXmlForEmptyEcu(uint32_t protocol, bool withNrcTable) const {
    const bool kwp = protocol == ProtocolKwp;
    std::string xml = kXmlDeclaration;
    if (!withNrcTable) {
        xml += kwp ? "<ECU protocol=\"KWP\"/>" : "<ECU protocol=\"UDS\"/>";
        return xml;
    }
    xml += kwp ? "<ECU protocol=\"KWP\">" : "<ECU protocol=\"UDS\">";
    xml += kLineEnd;
    xml += "<NEGATIVE_RESPONSE_CODES>";
    xml += kLineEnd;
    if (kwp) {
        AppendNrcTable(xml, std::begin(kKwpNrcTable), std::end(kKwpNrcTable));
    } else {
        AppendNrcTable(xml, std::begin(kUdsNrcTable), std::end(kUdsNrcTable));
    }
    xml += "</NEGATIVE_RESPONSE_CODES>";
    xml += kLineEnd;
    xml += "</ECU>";
    return xml;
}

// Not-a-number texts give 0 and succeed, like the C conversion they rely on. The decimal
// point is "." whatever locale the process has set (see platform/CNumbers.h).
bool ZDataModelUtilsImpl::ParseDouble(const char* text, double& out) const {
    if (IsEmpty(text)) {
        return false;
    }
    out = Platform::StrToDouble(text, nullptr);
    return true;
}

bool ZDataModelUtilsImpl::ParseFloat(const char* text, float& out) const {
    if (IsEmpty(text)) {
        return false;
    }
    out = Platform::StrToFloat(text, nullptr);
    return true;
}

bool ZDataModelUtilsImpl::ParseInt32(const char* text, int32_t& out) const {
    long long value = 0;
    if (IsEmpty(text) || !ParseWithBaseDetection(text, value)) {
        return false;
    }
    if (value < std::numeric_limits<int32_t>::min() || value > std::numeric_limits<int32_t>::max()) {
        return false;
    }
    out = static_cast<int32_t>(value);
    return true;
}

bool ZDataModelUtilsImpl::ParseUInt32(const char* text, uint32_t& out) const {
    long long value = 0;
    if (IsEmpty(text) || text[0] == '-' || !ParseWithBaseDetection(text, value)) {
        return false;
    }
    // A sign after leading blanks still reads as negative and is out of range here.
    if (value < 0 || value > static_cast<long long>(std::numeric_limits<uint32_t>::max())) {
        return false;
    }
    out = static_cast<uint32_t>(value);
    return true;
}

bool ZDataModelUtilsImpl::DoubleToBytes(double value, ByteBuffer& buffer) const {
    uint64_t bits = 0;
    static_assert(sizeof(bits) == sizeof(value), "IEEE double expected");
    std::memcpy(&bits, &value, sizeof(bits));
    WriteBigEndian(bits, buffer, 8);
    return true;
}

bool ZDataModelUtilsImpl::FloatToBytes(float value, ByteBuffer& buffer) const {
    uint32_t bits = 0;
    static_assert(sizeof(bits) == sizeof(value), "IEEE single expected");
    std::memcpy(&bits, &value, sizeof(bits));
    WriteBigEndian(bits, buffer, 4);
    return true;
}

bool ZDataModelUtilsImpl::Int32ToBytes(int32_t value, ByteBuffer& buffer, uint32_t count) const {
    return UInt32ToBytes(static_cast<uint32_t>(value), buffer, count);
}

// A 32-bit value has no bytes beyond the fourth, so counts above 4 are refused instead of
// writing made-up bytes.
bool ZDataModelUtilsImpl::UInt32ToBytes(uint32_t value, ByteBuffer& buffer, uint32_t count) const {
    if (count == 0 || count > 4) {
        return false;
    }
    WriteBigEndian(value, buffer, count);
    return true;
}

bool ZDataModelUtilsImpl::BytesToDouble(const ByteBuffer& buffer, double& out) const {
    if (buffer.size() != 8) {
        return false;
    }
    const uint64_t bits = ReadBigEndian(buffer);
    std::memcpy(&out, &bits, sizeof(out));
    return true;
}

bool ZDataModelUtilsImpl::BytesToFloat(const ByteBuffer& buffer, float& out) const {
    if (buffer.size() != 4) {
        return false;
    }
    const uint32_t bits = static_cast<uint32_t>(ReadBigEndian(buffer));
    std::memcpy(&out, &bits, sizeof(out));
    return true;
}

bool ZDataModelUtilsImpl::BytesToInt32(const ByteBuffer& buffer, int32_t& out) const {
    if (buffer.empty() || buffer.size() > 4) {
        return false;
    }
    uint32_t value = buffer[0] > 127 ? 0xFFFFFFFFu : 0u;
    for (uint8_t byte : buffer) {
        value = (value << 8u) | byte;
    }
    out = static_cast<int32_t>(value);
    return true;
}

bool ZDataModelUtilsImpl::BytesToUInt32(const ByteBuffer& buffer, uint32_t& out) const {
    if (buffer.empty() || buffer.size() > 4) {
        return false;
    }
    out = static_cast<uint32_t>(ReadBigEndian(buffer));
    return true;
}

// An empty text appends one zero byte (rather than writing at the front): images of empty
// texts have always carried that terminator.
bool ZDataModelUtilsImpl::TextToBytes(const char* text, ByteBuffer& buffer) const {
    if (text == nullptr) {
        return false;
    }
    const std::size_t length = std::strlen(text);
    if (length == 0) {
        buffer.push_back(0);
        return true;
    }
    GrowTo(buffer, length);
    std::copy(text, text + length, buffer.begin());
    return true;
}

bool ZDataModelUtilsImpl::ValueToBytes(const std::string& value, ParamDataType type, uint32_t byteLength,
                                       ByteBuffer& buffer) const {
    if (byteLength == 0) {
        return false;
    }
    switch (type) {
        case ParamDataType::None:
            if (!HexStringToBytes(buffer, value)) {
                return false;
            }
            GrowTo(buffer, byteLength);
            return true;
        case ParamDataType::Unsigned: {
            uint32_t number = 0;
            if (!ParseUInt32(value.c_str(), number)) {
                return false;
            }
            if ((byteLength == 1 && number > 0xFFu) || (byteLength == 2 && number > 0xFFFFu) ||
                (byteLength == 3 && number > 0xFFFFFFu)) {
                return false;
            }
            // Lengths above 4 fail in UInt32ToBytes: a 32-bit value has no further bytes.
            return UInt32ToBytes(number, buffer, byteLength);
        }
        case ParamDataType::Signed: {
            int32_t number = 0;
            if (!ParseInt32(value.c_str(), number) || byteLength > 4) {
                return false;
            }
            // Only the upper bound is checked, on purpose: existing documents hold values such
            // as -1000 in one-byte fields and expect the low byte to be written.
            if ((byteLength == 1 && number > 0x7F) || (byteLength == 2 && number > 0x7FFF) ||
                (byteLength == 3 && number > 0x7FFFFF)) {
                return false;
            }
            return Int32ToBytes(number, buffer, byteLength);
        }
        case ParamDataType::Fp: {
            float number = 0;
            if (!ParseFloat(value.c_str(), number)) {
                return false;
            }
            return FloatToBytes(number, buffer);
        }
        case ParamDataType::Double: {
            double number = 0;
            if (!ParseDouble(value.c_str(), number)) {
                return false;
            }
            return DoubleToBytes(number, buffer);
        }
        case ParamDataType::Ascii:
            if (value.size() > byteLength || !TextToBytes(value.c_str(), buffer)) {
                return false;
            }
            GrowTo(buffer, byteLength);
            return true;
        case ParamDataType::Undefined:
        case ParamDataType::Bcd:
        case ParamDataType::Ucs2:
        case ParamDataType::Utf8:
            break;
    }
    return false;
}

bool ZDataModelUtilsImpl::ValueToUInt32(const std::string& value, ParamDataType type, bool motorolaOrder,
                                        uint32_t& out) const {
    switch (type) {
        case ParamDataType::None: {
            ByteBuffer bytes;
            if (!HexStringToBytes(bytes, value)) {
                return false;
            }
            if (!motorolaOrder) {
                std::reverse(bytes.begin(), bytes.end());
            }
            return BytesToUInt32(bytes, out);
        }
        case ParamDataType::Unsigned:
        case ParamDataType::Signed:
            // Signed values are read by the unsigned rule too, so a minus sign fails here.
            return ParseUInt32(value.c_str(), out);
        case ParamDataType::Fp: {
            float number = 0;
            return ParseFloat(value.c_str(), number) && TruncateToUInt32(number, out);
        }
        case ParamDataType::Double: {
            double number = 0;
            return ParseDouble(value.c_str(), number) && TruncateToUInt32(number, out);
        }
        default:
            return false;
    }
}

std::vector<std::string> ZDataModelUtilsImpl::SplitString(const std::string& text, char separator) const {
    std::vector<std::string> pieces;
    std::size_t start = 0;
    std::size_t pos = 0;
    while ((pos = text.find(separator, start)) != std::string::npos) {
        pieces.push_back(text.substr(start, pos - start));
        start = pos + 1;
    }
    if (start < text.size()) {
        pieces.push_back(text.substr(start));
    }
    if (pieces.empty()) {
        pieces.push_back(text);
    }
    return pieces;
}

}  // namespace Korvel
