// The one debug-output call of the library (OutputDebugStringA on Windows, the installed
// sink elsewhere).
#pragma once

#include <string>

namespace Korvel::Platform {

void DebugOutput(const char* text);
inline void DebugOutput(const std::string& text) {
    DebugOutput(text.c_str());
}

}  // namespace Korvel::Platform
