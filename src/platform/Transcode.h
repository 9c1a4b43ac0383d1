// Text conversions at the XML library boundary, on xerces-c's transcoding service. The
// transcoders are created once per process and reused.
#pragma once

#include <xercesc/util/XercesDefs.hpp>

#include <cstddef>
#include <stdexcept>
#include <string>

namespace Korvel::Platform {

// Raised when a text cannot be converted (invalid UTF-8 input, for example).
class TranscodeError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

using WideString = std::basic_string<XMLCh>;

// UTF-8 to UTF-16; throws TranscodeError for invalid UTF-8.
WideString Utf8ToUtf16(const char* text, std::size_t length);
inline WideString Utf8ToUtf16(const std::string& text) {
    return Utf8ToUtf16(text.data(), text.size());
}

// The UTF-8 form of an ASCII text is its units as bytes: `length` of them go to `out`. Callers
// know the text is ASCII (every unit below 0x80).
inline void CopyAscii(const XMLCh* text, std::size_t length, char* out) {
    for (std::size_t i = 0; i < length; ++i) {
        out[i] = static_cast<char>(text[i]);
    }
}

// UTF-16 to UTF-8 (unpaired surrogates become U+FFFD).
std::string Utf16ToUtf8(const XMLCh* text, std::size_t length);
// Zero-terminated UTF-16 (null gives an empty text) to UTF-8.
std::string Utf16ToUtf8(const XMLCh* text);
inline std::string Utf16ToUtf8(const WideString& text) {
    return Utf16ToUtf8(text.data(), text.size());
}

// UTF-16 to Windows-1252; a character the code page lacks becomes "?".
std::string Utf16ToWindows1252(const XMLCh* text, std::size_t length);
inline std::string Utf16ToWindows1252(const WideString& text) {
    return Utf16ToWindows1252(text.data(), text.size());
}

// True when code page 1252 has the character (a code point; surrogates and characters beyond
// U+FFFF never).
bool Windows1252HasCharacter(char32_t c);

// Windows-1252 bytes to UTF-16 (for tests and tools that read such texts).
WideString Windows1252ToUtf16(const char* text, std::size_t length);

}  // namespace Korvel::Platform
