#include "model/ZPosResponse.h"

#include <ZeKL/IConstModelItemVisitor.h>

namespace Korvel {

ZPosResponse::ZPosResponse(ZModelArena* arena) : ZMessage(MessageKindPosResponse, arena) {}

ZPosResponse::ZPosResponse(const ZPosResponse& other)
    : IModelItem(), IContainer(), IMessage(), ZMessage(other), IPosResponse() {}

ZPosResponse::ZPosResponse(const IPosResponse& other) : ZMessage(static_cast<const IMessage&>(other)) {}

ZPosResponse::~ZPosResponse() = default;

IParam* ZPosResponse::GetSidParam() {
    return FindParamBySemantics(SemanticsSid);
}

void ZPosResponse::Accept(IConstModelItemVisitor& visitor) const {
    visitor.VisitPosResponse(*this);
}

void ZPosResponse::Accept(IConstModelItemVisitor& visitor) {
    visitor.VisitPosResponse(*this);
}

}  // namespace Korvel
