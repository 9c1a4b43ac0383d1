// The positive response message of a service instance.
#pragma once

#include "model/ZMessage.h"

namespace Korvel {

class ZPosResponse : public ZMessage, public IPosResponse {
public:
    // With an arena, the parameter list and index are kept there.
    explicit ZPosResponse(ZModelArena* arena = nullptr);
    ZPosResponse(const ZPosResponse& other);
    explicit ZPosResponse(const IPosResponse& other);
    ZPosResponse& operator=(const ZPosResponse&) = delete;
    ~ZPosResponse() override;

    ZItemKind Kind() const override { return ZItemKind::PosResponse; }
    std::size_t BlockBytes() const override { return sizeof(ZPosResponse); }

    // The first parameter whose semantics contain "SID", or null.
    IParam* GetSidParam() override;

    void Accept(IConstModelItemVisitor& visitor) const override;
    void Accept(IConstModelItemVisitor& visitor) override;
};

}  // namespace Korvel
