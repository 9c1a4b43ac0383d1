// The one debug-output call of the library (OutputDebugStringA on Windows, the installed
// sink everywhere).
#pragma once

#include <string>

namespace Korvel::Platform {

// Receives one debug text with the context it was installed with.
using DebugSink = void (*)(const char* text, void* context);

// Installs the sink (null: none) and returns the previous one. Once it returns, the previous
// sink is not running and will not be called again, so its context may go.
DebugSink SetDebugSink(DebugSink sink, void* context);

// Sends the text to the debugger (Windows) and to the installed sink. Safe from any thread:
// concurrent reads report at the same time.
void DebugOutput(const char* text);
inline void DebugOutput(const std::string& text) {
    DebugOutput(text.c_str());
}

}  // namespace Korvel::Platform
