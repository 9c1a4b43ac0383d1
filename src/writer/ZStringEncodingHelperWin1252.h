// Encoding helper of Windows-1252 (and "iso-8859-1") documents: escapes the markup
// characters and writes code page 1252; a character the code page lacks becomes "?".
#pragma once

#include "writer/ZStringEncodingHelper.h"

namespace Korvel {

class ZStringEncodingHelperWin1252 : public ZStringEncodingHelper {
protected:
    std::string FromUtf16(const Platform::WideString& text) const override;
    bool Carries(char32_t c) const override;
};

}  // namespace Korvel
