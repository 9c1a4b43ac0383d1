#include "writer/ZStringEncodingHelperWin1252.h"

namespace Korvel {

std::string ZStringEncodingHelperWin1252::FromUtf16(const Platform::WideString& text) const {
    return Platform::Utf16ToWindows1252(text);
}

bool ZStringEncodingHelperWin1252::Carries(char32_t c) const {
    return Platform::Windows1252HasCharacter(c);
}

}  // namespace Korvel
