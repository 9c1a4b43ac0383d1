#include "platform/DebugOutput.h"

#include <ZeKL/DebugOutput.h>

#ifdef _WIN32
#include <windows.h>
#endif

namespace Korvel {

namespace {

// Constant-initialised, so the sink may be installed and used from any static constructor.
struct InstalledSink {
    DebugOutputSink sink;
    void* context;
};
InstalledSink g_sink = {nullptr, nullptr};

}  // namespace

DebugOutputSink SetDebugOutputSink(DebugOutputSink sink, void* context) {
    const DebugOutputSink previous = g_sink.sink;
    g_sink.sink = sink;
    g_sink.context = sink != nullptr ? context : nullptr;
    return previous;
}

namespace Platform {

void DebugOutput(const char* text) {
    if (text == nullptr) {
        return;
    }
#ifdef _WIN32
    OutputDebugStringA(text);
#endif
    if (g_sink.sink != nullptr) {
        g_sink.sink(text, g_sink.context);
    }
}

}  // namespace Platform

}  // namespace Korvel
