// The request message of a service instance.
#pragma once

#include "model/ZMessage.h"

namespace Korvel {

class ZRequest : public ZMessage, public IRequest {
public:
    ZRequest();
    ZRequest(const ZRequest& other);
    explicit ZRequest(const IRequest& other);
    ZRequest& operator=(const ZRequest&) = delete;
    ~ZRequest() override;

    // The first parameter whose semantics contain "SID", or null.
    IParam* GetSidParam() override;

    void Accept(IConstModelItemVisitor& visitor) const override;
    void Accept(IConstModelItemVisitor& visitor) override;
};

}  // namespace Korvel
