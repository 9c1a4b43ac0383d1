// The request message of a service instance.
#pragma once

#include "model/ZMessage.h"

namespace Korvel {

class ZRequest : public ZMessage, public IRequest {
public:
    // With an arena, the parameter list and index are kept there.
    explicit ZRequest(ZModelArena* arena = nullptr);
    ZRequest(const ZRequest& other);
    explicit ZRequest(const IRequest& other);
    ZRequest& operator=(const ZRequest&) = delete;
    ~ZRequest() override;

    ZItemKind Kind() const override { return ZItemKind::Request; }
    std::size_t BlockBytes() const override { return sizeof(ZRequest); }

    // The first parameter whose semantics contain "SID", or null.
    IParam* GetSidParam() override;

    void Accept(IConstModelItemVisitor& visitor) const override;
    void Accept(IConstModelItemVisitor& visitor) override;
};

}  // namespace Korvel
