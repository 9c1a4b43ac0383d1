#include "writer/ZStringEncodingHelperUtf8.h"

namespace Korvel {

bool ZStringEncodingHelperUtf8::EscapesLetters() const {
    return true;
}

}  // namespace Korvel
