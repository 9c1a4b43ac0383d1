#include "reader/handlers/AttributeText.h"

#include "platform/CNumbers.h"

#include <charconv>
#include <cstdlib>
#include <limits>
#include <string>

namespace Korvel::AttributeText {

namespace {

bool IsBlank(XMLCh c) {
    return c == u' ' || c == u'\t' || c == u'\n' || c == u'\v' || c == u'\f' || c == u'\r';
}

const XMLCh* SkipBlanks(const XMLCh* text) {
    while (IsBlank(*text)) {
        ++text;
    }
    return text;
}

}  // namespace

int32_t Atol(const XMLCh* text) {
    if (text == nullptr) {
        return 0;
    }
    text = SkipBlanks(text);
    bool negative = false;
    if (*text == u'-' || *text == u'+') {
        negative = *text == u'-';
        ++text;
    }
    // Accumulate as a negative number so that the lowest value fits.
    constexpr int64_t kLowest = std::numeric_limits<int32_t>::min();
    constexpr int64_t kHighest = std::numeric_limits<int32_t>::max();
    int64_t value = 0;
    bool saturated = false;
    for (; *text >= u'0' && *text <= u'9'; ++text) {
        if (saturated) {
            continue;
        }
        value = value * 10 - (*text - u'0');
        if (value < kLowest) {
            saturated = true;
        }
    }
    if (negative) {
        return saturated ? static_cast<int32_t>(kLowest) : static_cast<int32_t>(value);
    }
    if (saturated || -value > kHighest) {
        return static_cast<int32_t>(kHighest);
    }
    return static_cast<int32_t>(-value);
}

double Atof(const XMLCh* text) {
    if (text == nullptr) {
        return 0.0;
    }
    text = SkipBlanks(text);
    // A number is made of ASCII characters only; the first other character ends it.
    std::string ascii;
    for (; *text != 0 && *text < 0x80; ++text) {
        ascii.push_back(static_cast<char>(*text));
    }
    const char* first = ascii.c_str();
    const char* last = first + ascii.size();
    bool negative = false;
    if (first != last && (*first == '+' || *first == '-')) {
        negative = *first == '-';
        ++first;
    }
    if (first == last || *first == '+' || *first == '-') {
        return 0.0;
    }
    const bool hex = last - first > 1 && first[0] == '0' && (first[1] == 'x' || first[1] == 'X');
    double value = 0.0;
    if (!hex) {
        const std::from_chars_result result = std::from_chars(first, last, value, std::chars_format::general);
        if (result.ec == std::errc::invalid_argument) {
            return 0.0;
        }
        if (result.ec == std::errc()) {
            return negative ? -value : value;
        }
    }
    // Hexadecimal numbers and values out of range: the C library's own reading, in the "C"
    // locale whatever the process has set.
    value = Platform::StrToDouble(first, nullptr);
    return negative ? -value : value;
}

}  // namespace Korvel::AttributeText
