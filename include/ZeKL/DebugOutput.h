// Debug output channel of the library (an addition to the eight exports). On Windows every
// text goes to OutputDebugStringA; elsewhere to a process-wide sink that a program may
// install. By default nothing is written.
#pragma once

#include <ZeKL/Types.h>

namespace Korvel {

// Receives one debug text (zero-terminated, UTF-8, usually ending in "\n").
using DebugOutputSink = void (*)(const char* text, void* context);

// Installs the sink (null restores the silent default); returns the previous one. On Windows
// an installed sink receives the texts in addition to OutputDebugStringA. Thread-safe: the
// sink is called under a lock, so once this returns the previous sink is not running and its
// context may go; a sink must not install a sink itself.
ZEKL_API DebugOutputSink SetDebugOutputSink(DebugOutputSink sink, void* context);

}  // namespace Korvel
