#include "platform/DebugOutput.h"

#include <mutex>

#ifdef _WIN32
#include <windows.h>
#endif

namespace Korvel::Platform {

namespace {

// Constant-initialised (std::mutex has a constexpr constructor), so a sink may be installed
// and used from any static constructor. The sink is called under the lock: installing a new
// sink waits for a running call of the old one, so its context can be freed safely after.
struct InstalledSink {
    std::mutex lock;
    DebugSink sink = nullptr;
    void* context = nullptr;
};
InstalledSink g_installed;

}  // namespace

DebugSink SetDebugSink(DebugSink sink, void* context) {
    const std::lock_guard<std::mutex> hold(g_installed.lock);
    const DebugSink previous = g_installed.sink;
    g_installed.sink = sink;
    g_installed.context = sink != nullptr ? context : nullptr;
    return previous;
}

void DebugOutput(const char* text) {
    if (text == nullptr) {
        return;
    }
#ifdef _WIN32
    OutputDebugStringA(text);
#endif
    const std::lock_guard<std::mutex> hold(g_installed.lock);
    if (g_installed.sink != nullptr) {
        g_installed.sink(text, g_installed.context);
    }
}

}  // namespace Korvel::Platform
