#include <ZeKL/DebugOutput.h>

#include "platform/DebugOutput.h"

namespace Korvel {

DebugOutputSink SetDebugOutputSink(DebugOutputSink sink, void* context) {
    return Platform::SetDebugSink(sink, context);
}

}  // namespace Korvel
