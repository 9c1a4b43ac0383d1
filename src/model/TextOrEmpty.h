// Null text arguments are read as the empty text, so a careless caller gets an empty value
// instead of a crash.
#pragma once

#include <string_view>

namespace Korvel {

inline const char* TextOrEmpty(const char* text) {
    return text != nullptr ? text : "";
}

// A text key for the containers' maps: measured once, then compared without copies.
inline std::string_view KeyText(const char* text) {
    return std::string_view(TextOrEmpty(text));
}

}  // namespace Korvel
