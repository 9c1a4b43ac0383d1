// A narrow (UTF-8) text together with its UTF-16 form for the XML library (file names,
// encoding names).
#pragma once

#include "platform/Transcode.h"

#include <string>

namespace Korvel {

class ZXmlString {
public:
    // Throws Platform::TranscodeError when the text is not valid UTF-8.
    explicit ZXmlString(const char* text);
    const std::string& Narrow() const { return narrow_; }
    const XMLCh* Wide() const { return wide_.c_str(); }

private:
    std::string narrow_;
    Platform::WideString wide_;
};

}  // namespace Korvel
