#include "model/ZNegResponse.h"

#include <ZeKL/IConstModelItemVisitor.h>
#include <ZeKL/IEcu.h>
#include <ZeKL/IInstance.h>

namespace Korvel {

ZNegResponse::ZNegResponse(ZModelArena* arena) : ZMessage(MessageKindNegResponse, arena) {}

ZNegResponse::ZNegResponse(const ZNegResponse& other)
    : IModelItem(), IContainer(), IMessage(), ZMessage(other), INegResponse() {}

ZNegResponse::ZNegResponse(const INegResponse& other) : ZMessage(static_cast<const IMessage&>(other)) {}

ZNegResponse::~ZNegResponse() = default;

// Every negative response starts with the same SID_NR byte 0x7F, so one shared parameter
// describes it for all of them.
const IParam* ZNegResponse::GetSidNrParam() {
    static const ZParam sidNr("SID_NR", 7, 8, "7F", "none", "", "SID CONST MOTOROLA", "");
    return &sidNr;
}

IParam* ZNegResponse::GetRequestSidParam() {
    auto* instance = dynamic_cast<IInstance*>(GetParent());
    if (instance == nullptr) {
        return nullptr;
    }
    IRequest* request = instance->GetRequest();
    return request != nullptr ? request->GetSidParam() : nullptr;
}

// The root is cast to an ECU as a reference on purpose: a negative response outside an ECU is a
// caller error, reported with std::bad_cast.
INrcContainer* ZNegResponse::GetNrcContainer() {
    return dynamic_cast<IEcu&>(*GetRoot()).GetNrcContainer();
}

void ZNegResponse::Accept(IConstModelItemVisitor& visitor) const {
    visitor.VisitNegResponse(*this);
}

void ZNegResponse::Accept(IConstModelItemVisitor& visitor) {
    visitor.VisitNegResponse(*this);
}

}  // namespace Korvel
