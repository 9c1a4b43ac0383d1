// Handler of NEGATIVE_RESPONSE: the negative response message of the instance on top of the stack.
#pragma once

#include "reader/handlers/KLTags.h"
#include "reader/handlers/ZKLXEHMessage.h"

namespace Korvel {

class ZKLXEHNegativeResponse : public ZKLXEHMessage {
public:
    explicit ZKLXEHNegativeResponse(const ZKLXEHContext& context,
                                    const XMLCh* tagName = KLTags::kNegativeResponse);
    ~ZKLXEHNegativeResponse() override;
};

}  // namespace Korvel
