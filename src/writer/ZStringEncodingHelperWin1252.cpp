#include "writer/ZStringEncodingHelperWin1252.h"

namespace Korvel {

std::string ZStringEncodingHelperWin1252::FromUtf16(const Platform::WideString& text) const {
    return Platform::Utf16ToWindows1252(text);
}

}  // namespace Korvel
