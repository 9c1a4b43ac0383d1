#include "platform/Transcode.h"

#include "platform/XmlPlatform.h"

#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/TransService.hpp>
#include <xercesc/util/XMLException.hpp>

#include <memory>

namespace Korvel::Platform {

namespace {

using xercesc::XMLTranscoder;

constexpr std::size_t kChunk = 1024;
constexpr XMLCh kReplacementCharacter = 0xFFFD;
constexpr XMLCh kQuestionMark = u'?';
constexpr const char* kInvalidUtf8 = "Invalid UTF-8 text";
constexpr const char* kNoTranscoder = "No transcoder for ";

bool IsHighSurrogate(XMLCh c) {
    return c >= 0xD800 && c <= 0xDBFF;
}

bool IsLowSurrogate(XMLCh c) {
    return c >= 0xDC00 && c <= 0xDFFF;
}

// The transcoders are made once and reused for every text. The set holds a share of the XML
// platform (declared first, released last), so it is destroyed before Terminate runs.
class TranscoderSet {
public:
    TranscoderSet() : platform_(AcquireXmlPlatform()), utf8_(Make("UTF-8")), win1252_(Make("windows-1252")) {}

    XMLTranscoder& Utf8() { return *utf8_; }
    XMLTranscoder& Win1252() { return *win1252_; }

private:
    static std::unique_ptr<XMLTranscoder> Make(const char* encoding) {
        xercesc::XMLTransService::Codes result = xercesc::XMLTransService::Ok;
        std::unique_ptr<XMLTranscoder> transcoder(
            xercesc::XMLPlatformUtils::fgTransService->makeNewTranscoderFor(encoding, result, kChunk * 4));
        if (!transcoder || result != xercesc::XMLTransService::Ok) {
            throw TranscodeError(std::string(kNoTranscoder) + encoding);
        }
        return transcoder;
    }

    std::shared_ptr<ZXmlPlatformInitializer> platform_;
    std::unique_ptr<XMLTranscoder> utf8_;
    std::unique_ptr<XMLTranscoder> win1252_;
};

TranscoderSet& Transcoders() {
    try {
        static TranscoderSet transcoders;
        return transcoders;
    } catch (const xercesc::XMLException&) {
        throw TranscodeError("XML platform could not be initialised");
    }
}

// Bytes to UTF-16 in fixed chunks, so no per-call scratch allocation is needed.
WideString Decode(XMLTranscoder& transcoder, const char* text, std::size_t length) {
    WideString result;
    if (text == nullptr || length == 0) {
        return result;
    }
    result.reserve(length);
    XMLCh chars[kChunk];
    unsigned char sizes[kChunk];
    const auto* bytes = reinterpret_cast<const XMLByte*>(text);
    std::size_t done = 0;
    while (done < length) {
        XMLSize_t eaten = 0;
        const XMLSize_t produced =
            transcoder.transcodeFrom(bytes + done, length - done, chars, kChunk, eaten, sizes);
        if (eaten == 0 && produced == 0) {
            // A sequence cut off at the end of the text.
            throw TranscodeError(kInvalidUtf8);
        }
        result.append(chars, produced);
        done += eaten;
    }
    return result;
}

// UTF-16 (free of unpaired surrogates) to bytes in fixed chunks.
std::string Encode(XMLTranscoder& transcoder, const XMLCh* text, std::size_t length) {
    std::string result;
    result.reserve(length);
    XMLByte bytes[kChunk * 4];
    std::size_t done = 0;
    while (done < length) {
        XMLSize_t eaten = 0;
        const XMLSize_t produced = transcoder.transcodeTo(text + done, length - done, bytes, sizeof(bytes),
                                                          eaten, XMLTranscoder::UnRep_RepChar);
        if (eaten == 0 && produced == 0) {
            throw TranscodeError("Text could not be converted");
        }
        result.append(reinterpret_cast<const char*>(bytes), produced);
        done += eaten;
    }
    return result;
}

}  // namespace

WideString Utf8ToUtf16(const char* text, std::size_t length) {
    if (text == nullptr || length == 0) {
        return WideString();
    }
    try {
        return Decode(Transcoders().Utf8(), text, length);
    } catch (const xercesc::XMLException&) {
        throw TranscodeError(kInvalidUtf8);
    }
}

std::string Utf16ToUtf8(const XMLCh* text, std::size_t length) {
    if (text == nullptr || length == 0) {
        return std::string();
    }
    // Most texts of a document are ASCII, whose UTF-8 bytes are its units: one pass to see it,
    // one to copy, and no transcoder.
    XMLCh units = 0;
    for (std::size_t i = 0; i < length; ++i) {
        units |= text[i];
    }
    if (units < 0x80) {
        std::string ascii(length, '\0');
        CopyAscii(text, length, ascii.data());
        return ascii;
    }
    // Unpaired surrogates have no UTF-8 form; they become U+FFFD first.
    WideString clean(text, length);
    for (std::size_t i = 0; i < clean.size(); ++i) {
        if (IsHighSurrogate(clean[i]) && i + 1 < clean.size() && IsLowSurrogate(clean[i + 1])) {
            ++i;
        } else if (IsHighSurrogate(clean[i]) || IsLowSurrogate(clean[i])) {
            clean[i] = kReplacementCharacter;
        }
    }
    try {
        return Encode(Transcoders().Utf8(), clean.data(), clean.size());
    } catch (const xercesc::XMLException&) {
        throw TranscodeError("UTF-16 text could not be converted to UTF-8");
    }
}

std::string Utf16ToUtf8(const XMLCh* text) {
    if (text == nullptr) {
        return std::string();
    }
    std::size_t length = 0;
    while (text[length] != 0) {
        ++length;
    }
    return Utf16ToUtf8(text, length);
}

std::string Utf16ToWindows1252(const XMLCh* text, std::size_t length) {
    if (text == nullptr || length == 0) {
        return std::string();
    }
    XMLTranscoder& transcoder = Transcoders().Win1252();
    // Every character the code page lacks (a surrogate pair counts as one character) becomes
    // "?" before the conversion, so the result does not depend on the transcoder's own
    // replacement byte.
    WideString clean;
    clean.reserve(length);
    for (std::size_t i = 0; i < length; ++i) {
        const XMLCh c = text[i];
        if (IsHighSurrogate(c) && i + 1 < length && IsLowSurrogate(text[i + 1])) {
            ++i;
            clean.push_back(kQuestionMark);
        } else if (IsHighSurrogate(c) || IsLowSurrogate(c) || !transcoder.canTranscodeTo(c)) {
            clean.push_back(kQuestionMark);
        } else {
            clean.push_back(c);
        }
    }
    try {
        return Encode(transcoder, clean.data(), clean.size());
    } catch (const xercesc::XMLException&) {
        throw TranscodeError("UTF-16 text could not be converted to Windows-1252");
    }
}

bool Windows1252HasCharacter(char32_t c) {
    if (c > 0xFFFF || IsHighSurrogate(static_cast<XMLCh>(c)) || IsLowSurrogate(static_cast<XMLCh>(c))) {
        return false;
    }
    return Transcoders().Win1252().canTranscodeTo(static_cast<XMLCh>(c));
}

WideString Windows1252ToUtf16(const char* text, std::size_t length) {
    try {
        return Decode(Transcoders().Win1252(), text, length);
    } catch (const xercesc::XMLException&) {
        throw TranscodeError("Windows-1252 text could not be converted");
    }
}

}  // namespace Korvel::Platform
