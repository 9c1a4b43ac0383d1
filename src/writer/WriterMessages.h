// Fixed texts the writer puts on the debug output; tests compare against the same constants.
#pragma once

namespace Korvel::WriterMessages {

inline constexpr const char* kByteLengthOverflow = "Byte Length overflow!";
inline constexpr const char* kExceptionDuringWrite = "Exception during write!";

// Reasons that WriteToFile gives the caller (the system's own texts come from platform/File.h).
inline constexpr const char* kNoFileName = "no file name";
inline constexpr const char* kNoEncoding = "no encoding";
inline constexpr const char* kDocumentTooLong = "the document is longer than 4294967295 bytes";
inline constexpr const char* kUnexpectedFailure = "unexpected failure";

// Why a value could not be written: "<the unit of parameter 'X' in the response of instance
// 'Y'> holds 'Ω' (U+03A9), which <Windows-1252> cannot carry", "<...> is not valid UTF-8".
inline constexpr const char* kHolds = " holds ";
inline constexpr const char* kWhich = ", which ";
inline constexpr const char* kCannotCarry = " cannot carry";
inline constexpr const char* kNotUtf8 = " is not valid UTF-8";

}  // namespace Korvel::WriterMessages
