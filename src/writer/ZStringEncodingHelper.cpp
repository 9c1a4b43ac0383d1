#include "writer/ZStringEncodingHelper.h"

#include <cstring>

namespace Korvel {

namespace {

// References of the markup characters, shared by every helper.
const char* MarkupReference(char c, char next) {
    switch (c) {
        case '&':
            // An ampersand that opens a numeric reference ("&#") stays as it is, so a text that
            // already holds such a reference is not escaped twice. Named references are.
            return next == '#' ? nullptr : "&amp;";
        case '<':
            return "&lt;";
        case '>':
            return "&gt;";
        case '\'':
            return "&apos;";
        case '"':
            return "&quot;";
        default:
            return nullptr;
    }
}

// References of the letters that UTF-8 documents carry as numeric references.
const char* LetterReference(char16_t c) {
    switch (c) {
        case 0x00E4:
            return "&#228;";
        case 0x00E8:
            return "&#232;";
        case 0x00E9:
            return "&#233;";
        case 0x00F6:
            return "&#246;";
        case 0x00FC:
            return "&#252;";
        case 0x00DF:
            return "&#223;";
        case 0x00C4:
            return "&#196;";
        // É is written as the reference of È, and È itself stays a plain letter. Documents
        // written by earlier versions hold exactly this, and callers compare them byte for
        // byte, so it is kept on purpose.
        case 0x00C9:
            return "&#200;";
        case 0x00D6:
            return "&#214;";
        case 0x00DC:
            return "&#220;";
        case 0x20AC:
            return "&#8364;";
        default:
            return nullptr;
    }
}

bool IsAscii(const char* text, std::size_t length) {
    for (std::size_t i = 0; i < length; ++i) {
        if (static_cast<unsigned char>(text[i]) >= 0x80) {
            return false;
        }
    }
    return true;
}

void AppendAscii(Platform::WideString& out, const char* text) {
    for (; *text != '\0'; ++text) {
        out.push_back(static_cast<char16_t>(*text));
    }
}

}  // namespace

ZStringEncodingHelper::~ZStringEncodingHelper() = default;

bool ZStringEncodingHelper::EscapesLetters() const {
    return false;
}

bool ZStringEncodingHelper::Carries(char32_t /*c*/) const {
    return true;
}

char32_t ZStringEncodingHelper::FirstUncarried(const char* text) const {
    if (text == nullptr) {
        return 0;
    }
    const std::size_t length = std::strlen(text);
    // Every output encoding carries ASCII, and only non-ASCII text needs the transcoder.
    if (IsAscii(text, length)) {
        return 0;
    }
    const Platform::WideString wide = Platform::Utf8ToUtf16(text, length);
    for (std::size_t i = 0; i < wide.size(); ++i) {
        char32_t c = static_cast<char32_t>(wide[i]);
        const bool pair = c >= 0xD800 && c <= 0xDBFF && i + 1 < wide.size() && wide[i + 1] >= 0xDC00 &&
                          wide[i + 1] <= 0xDFFF;
        if (pair) {
            c = 0x10000 + ((c - 0xD800) << 10) + (static_cast<char32_t>(wide[i + 1]) - 0xDC00);
            ++i;
        }
        if (c >= 0x80 && !Carries(c)) {
            return c;
        }
    }
    return 0;
}

std::string ZStringEncodingHelper::FromUtf16(const Platform::WideString& text) const {
    return Platform::Utf16ToUtf8(text);
}

void ZStringEncodingHelper::Encode(const char* text, std::string& out) const {
    out.clear();
    if (text == nullptr) {
        return;
    }
    const std::size_t length = std::strlen(text);

    // Pure ASCII reads and writes the same in UTF-8 and in code page 1252 and holds none of
    // the letters, so only the markup characters need attention: skip the transcoders.
    if (IsAscii(text, length)) {
        out.reserve(length);
        for (std::size_t i = 0; i < length; ++i) {
            const char* reference = MarkupReference(text[i], text[i + 1]);
            if (reference != nullptr) {
                out += reference;
            } else {
                out.push_back(text[i]);
            }
        }
        return;
    }

    const Platform::WideString wide = Platform::Utf8ToUtf16(text, length);
    const bool letters = EscapesLetters();
    Platform::WideString escaped;
    escaped.reserve(wide.size() + 16);
    for (std::size_t i = 0; i < wide.size(); ++i) {
        const char16_t c = static_cast<char16_t>(wide[i]);
        const char* reference = nullptr;
        if (c < 0x80) {
            const char16_t next = i + 1 < wide.size() ? static_cast<char16_t>(wide[i + 1]) : 0;
            reference = MarkupReference(static_cast<char>(c), next < 0x80 ? static_cast<char>(next) : '\0');
        } else if (letters) {
            reference = LetterReference(c);
        }
        if (reference != nullptr) {
            AppendAscii(escaped, reference);
        } else {
            escaped.push_back(wide[i]);
        }
    }
    out = FromUtf16(escaped);
}

}  // namespace Korvel
