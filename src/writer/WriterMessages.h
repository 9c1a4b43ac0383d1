// Fixed texts the writer puts on the debug output; tests compare against the same constants.
#pragma once

namespace Korvel::WriterMessages {

inline constexpr const char* kByteLengthOverflow = "Byte Length overflow!";
inline constexpr const char* kExceptionDuringWrite = "Exception during write!";

}  // namespace Korvel::WriterMessages
