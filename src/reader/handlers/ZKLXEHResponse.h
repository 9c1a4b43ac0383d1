// Handler of RESPONSE: the positive response message of the instance on top of the stack.
#pragma once

#include "reader/handlers/KLTags.h"
#include "reader/handlers/ZKLXEHMessage.h"

namespace Korvel {

class ZKLXEHResponse : public ZKLXEHMessage {
public:
    explicit ZKLXEHResponse(const ZKLXEHContext& context, const XMLCh* tagName = KLTags::kResponse);
    ~ZKLXEHResponse() override;
};

}  // namespace Korvel
