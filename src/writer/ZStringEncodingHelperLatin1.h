// Encoding helper of "iso-8859-1" documents. It writes the same bytes as the code page 1252
// helper (documents of earlier versions hold them), but a reader of the declared encoding takes
// the bytes 0x80 to 0x9F for control characters, so only U+0000 to U+007F and U+00A0 to
// U+00FF come back as they were written.
#pragma once

#include "writer/ZStringEncodingHelperWin1252.h"

namespace Korvel {

class ZStringEncodingHelperLatin1 : public ZStringEncodingHelperWin1252 {
protected:
    bool Carries(char32_t c) const override;
};

}  // namespace Korvel
