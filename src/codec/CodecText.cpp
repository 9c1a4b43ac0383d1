#include "codec/CodecText.h"

#include <cerrno>
#include <cmath>
#include <cstdlib>

namespace Korvel {

namespace {

void AppendCodePoint(uint32_t cp, std::string& out) {
    if (cp < 0x80) {
        out.push_back(static_cast<char>(cp));
    } else if (cp < 0x800) {
        out.push_back(static_cast<char>(0xC0 | (cp >> 6)));
        out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
    } else if (cp < 0x10000) {
        out.push_back(static_cast<char>(0xE0 | (cp >> 12)));
        out.push_back(static_cast<char>(0x80 | ((cp >> 6) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
    } else {
        out.push_back(static_cast<char>(0xF0 | (cp >> 18)));
        out.push_back(static_cast<char>(0x80 | ((cp >> 12) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | ((cp >> 6) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
    }
}

constexpr uint32_t kReplacement = 0xFFFD;

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

}  // namespace

void AppendUtf16AsUtf8(const uint8_t* bytes, std::size_t count, bool bigEndian, std::string& out) {
    const auto unit = [&](std::size_t i) -> uint32_t {
        const uint8_t a = bytes[2 * i];
        const uint8_t b = bytes[2 * i + 1];
        return bigEndian ? (uint32_t{a} << 8) | b : (uint32_t{b} << 8) | a;
    };
    for (std::size_t i = 0; i < count; ++i) {
        const uint32_t first = unit(i);
        if (first >= 0xD800 && first <= 0xDBFF && i + 1 < count) {
            const uint32_t second = unit(i + 1);
            if (second >= 0xDC00 && second <= 0xDFFF) {
                AppendCodePoint(0x10000 + ((first - 0xD800) << 10) + (second - 0xDC00), out);
                ++i;
                continue;
            }
        }
        AppendCodePoint(first >= 0xD800 && first <= 0xDFFF ? kReplacement : first, out);
    }
}

bool Utf8ToUtf16(const std::string& text, std::vector<uint16_t>& units) {
    units.clear();
    std::size_t i = 0;
    while (i < text.size()) {
        const uint8_t lead = static_cast<uint8_t>(text[i]);
        uint32_t cp = 0;
        std::size_t extra = 0;
        uint32_t least = 0;
        if (lead < 0x80) {
            cp = lead;
        } else if ((lead & 0xE0) == 0xC0) {
            cp = lead & 0x1F;
            extra = 1;
            least = 0x80;
        } else if ((lead & 0xF0) == 0xE0) {
            cp = lead & 0x0F;
            extra = 2;
            least = 0x800;
        } else if ((lead & 0xF8) == 0xF0) {
            cp = lead & 0x07;
            extra = 3;
            least = 0x10000;
        } else {
            return false;
        }
        if (i + extra >= text.size()) {
            return false;
        }
        for (std::size_t k = 1; k <= extra; ++k) {
            const uint8_t next = static_cast<uint8_t>(text[i + k]);
            if ((next & 0xC0) != 0x80) {
                return false;
            }
            cp = (cp << 6) | (next & 0x3F);
        }
        if (cp < least || cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF)) {
            return false;
        }
        if (cp >= 0x10000) {
            cp -= 0x10000;
            units.push_back(static_cast<uint16_t>(0xD800 + (cp >> 10)));
            units.push_back(static_cast<uint16_t>(0xDC00 + (cp & 0x3FF)));
        } else {
            units.push_back(static_cast<uint16_t>(cp));
        }
        i += extra + 1;
    }
    return true;
}

std::size_t FormatUnsignedDecimal(uint64_t value, char* buffer) {
    char digits[20];
    std::size_t count = 0;
    do {
        digits[count++] = static_cast<char>('0' + value % 10);
        value /= 10;
    } while (value != 0);
    for (std::size_t i = 0; i < count; ++i) {
        buffer[i] = digits[count - 1 - i];
    }
    return count;
}

std::size_t FormatDecimal(int64_t value, char* buffer) {
    if (value >= 0) {
        return FormatUnsignedDecimal(static_cast<uint64_t>(value), buffer);
    }
    buffer[0] = '-';
    // The magnitude of the smallest value does not fit int64, so it is taken unsigned.
    return 1 + FormatUnsignedDecimal(0 - static_cast<uint64_t>(value), buffer + 1);
}

bool ParseWholeInteger(const std::string& text, bool& negative, uint64_t& magnitude) {
    std::size_t at = 0;
    negative = false;
    if (at < text.size() && text[at] == '-') {
        negative = true;
        ++at;
    }
    if (at >= text.size() || !IsDigit(text[at])) {
        return false;
    }
    const char* begin = text.c_str() + at;
    char* end = nullptr;
    errno = 0;
    const unsigned long long value = std::strtoull(begin, &end, 0);
    if (errno == ERANGE || end != text.c_str() + text.size()) {
        return false;
    }
    magnitude = value;
    return true;
}

bool ParseWholeReal(const std::string& text, double& value) {
    if (text.empty()) {
        return false;
    }
    const char first = text[0];
    if (!IsDigit(first) && first != '-' && first != '+' && first != '.') {
        return false;
    }
    const char* begin = text.c_str();
    char* end = nullptr;
    errno = 0;
    const double parsed = std::strtod(begin, &end);
    if (end == begin || end != begin + text.size() || !std::isfinite(parsed)) {
        return false;
    }
    value = parsed;
    return true;
}

}  // namespace Korvel
