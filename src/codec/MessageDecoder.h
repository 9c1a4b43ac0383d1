// Decoding the data of one message by its plan, into a result the caller keeps.
#pragma once

#include "codec/CodecPlan.h"

#include <ZeKL/CodecTypes.h>

#include <cstddef>

namespace Korvel {

// Fills `out` (its vectors and strings keep their storage from call to call) with every
// parameter of the message and the message-level problems; the instance fields and the
// recognition fields are left to the caller.
void DecodeMessage(const CodecPlan& plan, const MessagePlan& message, const uint8_t* data, std::size_t size,
                   DecodedMessage& out);

// Sets the number of parameters of `out`: those beyond it are kept in `out.spareParams` with
// their buffers, and new ones come from there first.
void ResizeKeepingStorage(DecodedMessage& out, std::size_t count);

// True when every usable constant of the message (its checks from `firstCheck` on) matches
// the data.
bool ConstantsMatch(const CodecPlan& plan, uint32_t firstCheck, uint32_t checkCount, const uint8_t* data,
                    std::size_t size);

}  // namespace Korvel
