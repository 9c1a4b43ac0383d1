// Text forms of the codec: UTF-16 code units to and from UTF-8, decimal numbers without the
// heap, and the strict number reading of values to encode.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace Korvel {

// Appends the UTF-8 form of `count` UTF-16 code units read from `bytes` (two bytes each, most
// significant first when `bigEndian`). An unpaired surrogate becomes U+FFFD.
void AppendUtf16AsUtf8(const uint8_t* bytes, std::size_t count, bool bigEndian, std::string& out);

// The UTF-16 code units of a UTF-8 text; false for text that is not UTF-8.
bool Utf8ToUtf16(const std::string& text, std::vector<uint16_t>& units);

// Writes the decimal digits of the value (with a minus when negative) and returns their count;
// `buffer` must hold 21 characters.
std::size_t FormatDecimal(int64_t value, char* buffer);
std::size_t FormatUnsignedDecimal(uint64_t value, char* buffer);

// A whole text as an integer: an optional minus, then digits with the library's base rule
// (0x hexadecimal, a leading 0 octal, else decimal), nothing after them. False for anything
// else or a magnitude beyond 64 bits.
bool ParseWholeInteger(const std::string& text, bool& negative, uint64_t& magnitude);

// A whole text as a finite real number; false for anything else.
bool ParseWholeReal(const std::string& text, double& value);

}  // namespace Korvel
