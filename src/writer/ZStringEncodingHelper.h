// Escapes the free-text attribute values of a document (the texts of the MAP elements) and
// converts them to the output encoding. The base class escapes the five markup characters
// and writes UTF-8; the derived classes add the letter references of UTF-8 documents or
// write Windows code page 1252.
#pragma once

#include "platform/Transcode.h"

#include <string>

namespace Korvel {

class ZStringEncodingHelper {
public:
    ZStringEncodingHelper() = default;
    ZStringEncodingHelper(const ZStringEncodingHelper&) = delete;
    ZStringEncodingHelper& operator=(const ZStringEncodingHelper&) = delete;
    virtual ~ZStringEncodingHelper();

    // Replaces `out` by the escaped form of the UTF-8 `text` (null counts as empty) in the
    // output encoding. Throws Platform::TranscodeError when `text` is not valid UTF-8.
    virtual void Encode(const char* text, std::string& out) const;

    // The first character of the UTF-8 `text` (null counts as empty) that the output encoding
    // cannot carry, as a code point; 0 when it carries every one. Throws
    // Platform::TranscodeError when `text` is not valid UTF-8.
    char32_t FirstUncarried(const char* text) const;

protected:
    // True when the output encoding has the character. The base (UTF-8) carries every one.
    virtual bool Carries(char32_t c) const;
    // True when the helper writes the twelve letters of the UTF-8 documents as references.
    virtual bool EscapesLetters() const;
    // Converts escaped UTF-16 text to the output encoding.
    virtual std::string FromUtf16(const Platform::WideString& text) const;
};

}  // namespace Korvel
