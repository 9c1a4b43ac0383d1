#include "writer/ZStringEncodingHelperLatin1.h"

namespace Korvel {

bool ZStringEncodingHelperLatin1::Carries(char32_t c) const {
    return c < 0x80 || (c >= 0xA0 && c <= 0xFF);
}

}  // namespace Korvel
