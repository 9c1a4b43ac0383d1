#include "model/ZRequest.h"

#include <ZeKL/IConstModelItemVisitor.h>

namespace Korvel {

ZRequest::ZRequest(ZModelArena* arena) : ZMessage(MessageKindRequest, arena) {}

ZRequest::ZRequest(const ZRequest& other)
    : IModelItem(), IContainer(), IMessage(), ZMessage(other), IRequest() {}

ZRequest::ZRequest(const IRequest& other) : ZMessage(static_cast<const IMessage&>(other)) {}

ZRequest::~ZRequest() = default;

IParam* ZRequest::GetSidParam() {
    return FindParamBySemantics(SemanticsSid);
}

void ZRequest::Accept(IConstModelItemVisitor& visitor) const {
    visitor.VisitRequest(*this);
}

void ZRequest::Accept(IConstModelItemVisitor& visitor) {
    visitor.VisitRequest(*this);
}

}  // namespace Korvel
