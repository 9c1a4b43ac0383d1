// UTF-8 validity check shared by the hostile-input tests and the reader fuzz target: every
// text of a model the reader returns must pass it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace Korvel::HostileTest {

// Strict UTF-8 check: no overlong forms, no surrogates, nothing above U+10FFFF.
inline bool IsValidUtf8(std::string_view text) {
    const auto* bytes = reinterpret_cast<const unsigned char*>(text.data());
    std::size_t i = 0;
    const std::size_t n = text.size();
    while (i < n) {
        const unsigned char lead = bytes[i];
        std::size_t extra = 0;
        uint32_t codePoint = 0;
        if (lead < 0x80) {
            ++i;
            continue;
        } else if (lead >= 0xC2 && lead <= 0xDF) {
            extra = 1;
            codePoint = lead & 0x1Fu;
        } else if (lead >= 0xE0 && lead <= 0xEF) {
            extra = 2;
            codePoint = lead & 0x0Fu;
        } else if (lead >= 0xF0 && lead <= 0xF4) {
            extra = 3;
            codePoint = lead & 0x07u;
        } else {
            return false;
        }
        if (i + extra >= n) {
            return false;
        }
        for (std::size_t k = 1; k <= extra; ++k) {
            const unsigned char next = bytes[i + k];
            if ((next & 0xC0u) != 0x80u) {
                return false;
            }
            codePoint = (codePoint << 6) | (next & 0x3Fu);
        }
        if ((extra == 2 && codePoint < 0x800) || (extra == 3 && codePoint < 0x10000) ||
            codePoint > 0x10FFFF || (codePoint >= 0xD800 && codePoint <= 0xDFFF)) {
            return false;
        }
        i += extra + 1;
    }
    return true;
}

}  // namespace Korvel::HostileTest
