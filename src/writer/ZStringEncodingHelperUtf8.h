// Encoding helper of "utf-8" documents: besides the markup characters, twelve letters are
// written as numeric character references.
#pragma once

#include "writer/ZStringEncodingHelper.h"

namespace Korvel {

class ZStringEncodingHelperUtf8 : public ZStringEncodingHelper {
protected:
    bool EscapesLetters() const override;
};

}  // namespace Korvel
