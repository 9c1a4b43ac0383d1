// Handler of REQUEST: the request message of the instance on top of the stack.
#pragma once

#include "reader/handlers/KLTags.h"
#include "reader/handlers/ZKLXEHMessage.h"

namespace Korvel {

class ZKLXEHRequest : public ZKLXEHMessage {
public:
    explicit ZKLXEHRequest(const ZKLXEHContext& context, const XMLCh* tagName = KLTags::kRequest);
    ~ZKLXEHRequest() override;
};

}  // namespace Korvel
