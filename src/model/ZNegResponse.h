// The negative response message of a service instance.
#pragma once

#include "model/ZMessage.h"

namespace Korvel {

class ZNegResponse : public ZMessage, public INegResponse {
public:
    // With an arena, the parameter list and index are kept there.
    explicit ZNegResponse(ZModelArena* arena = nullptr);
    ZNegResponse(const ZNegResponse& other);
    explicit ZNegResponse(const INegResponse& other);
    ZNegResponse& operator=(const ZNegResponse&) = delete;
    ~ZNegResponse() override;

    ZItemKind Kind() const override { return ZItemKind::NegResponse; }
    std::size_t BlockBytes() const override { return sizeof(ZNegResponse); }

    // The one process-wide SID_NR parameter; it is not one of the message's own parameters.
    const IParam* GetSidNrParam() override;
    // The SID parameter of the owning instance's request; null without an owning instance or
    // without a request.
    IParam* GetRequestSidParam() override;
    // The NRC table of the ECU at the root; throws std::bad_cast when the root is no ECU.
    INrcContainer* GetNrcContainer() override;

    void Accept(IConstModelItemVisitor& visitor) const override;
    void Accept(IConstModelItemVisitor& visitor) override;
};

}  // namespace Korvel
