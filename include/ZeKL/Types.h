// Basic types shared by every ZeKL interface.
#pragma once

#include <ZeKL/ZeKLExport.h>

#include <cstdint>
#include <string>
#include <vector>

namespace Korvel {

// A growable byte image, most significant byte first unless stated otherwise.
using ByteBuffer = std::vector<uint8_t>;

// Data type of a parameter, derived from its type name (see IDataModelUtils::DataTypeFromName).
enum class ParamDataType : int32_t {
    Undefined = -1,
    None = 0,
    Unsigned = 1,
    Signed = 2,
    Bcd = 3,
    Fp = 4,
    Double = 5,
    Ascii = 6,
    Ucs2 = 7,
    Utf8 = 8,
};

// Bit set of parameter semantics words.
using SemanticsFlags = uint32_t;
constexpr SemanticsFlags SemanticsSid = 1u;       // "SID"
constexpr SemanticsFlags SemanticsXid = 2u;       // "XID"
constexpr SemanticsFlags SemanticsConst = 4u;     // "CONST"
constexpr SemanticsFlags SemanticsMotorola = 8u;  // "MOTOROLA"
constexpr SemanticsFlags SemanticsGap = 16u;      // "GAP"

// Kind of a conversion, told by the suffix of its id.
enum class ConversionKind : uint32_t {
    Neither = 0,     // neither suffix
    Formula = 1,     // "_Formula": physical = raw * factor + offset
    ValueTable = 2,  // "_ValueTable": value-to-text table
    NotSet = 0xFFFFFFFFu,
};

// Diagnostic protocol of an ECU.
constexpr uint32_t ProtocolUds = 0u;
constexpr uint32_t ProtocolKwp = 1u;

// Kind of a message of a service instance.
constexpr uint32_t MessageKindRequest = 1u;
constexpr uint32_t MessageKindPosResponse = 2u;
constexpr uint32_t MessageKindNegResponse = 3u;

// Result of the add operations when the key is already present.
constexpr uint32_t InvalidIndex = 0xFFFFFFFFu;

// Report levels of IReporting.
constexpr int32_t ReportLevelFatal = 1;
constexpr int32_t ReportLevelError = 2;
constexpr int32_t ReportLevelWarn = 3;
constexpr int32_t ReportLevelInfo = 4;
constexpr int32_t ReportLevelDebug = 5;

}  // namespace Korvel
