#include "reader/ZXmlString.h"

namespace Korvel {

ZXmlString::ZXmlString(const char* text)
    : narrow_(text != nullptr ? text : ""), wide_(Platform::Utf8ToUtf16(narrow_)) {}

}  // namespace Korvel
