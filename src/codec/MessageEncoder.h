// Encoding the values of one message by its plan.
#pragma once

#include "codec/CodecPlan.h"

#include <ZeKL/CodecTypes.h>

#include <vector>

namespace Korvel {

// Writes every parameter of the message into `message` (grown with zeros to the message's
// length, other bits kept). False with `error` set and `message` unchanged on any failure.
bool EncodeMessage(const CodecPlan& plan, const MessagePlan& message, const std::vector<EncodeValue>& values,
                   ByteBuffer& out, CodecError& error);

}  // namespace Korvel
