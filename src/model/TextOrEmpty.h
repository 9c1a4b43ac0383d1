// Null text arguments are read as the empty text, so a careless caller gets an empty value
// instead of a crash.
#pragma once

namespace Korvel {

inline const char* TextOrEmpty(const char* text) {
    return text != nullptr ? text : "";
}

}  // namespace Korvel
