#include "reader/handlers/ZKLXEHResponse.h"

namespace Korvel {

ZKLXEHResponse::ZKLXEHResponse(const ZKLXEHContext& context, const XMLCh* tagName)
    : ZKLXEHMessage(tagName, KLTag::Response, ReaderMessages::kResponseTexts,
                    ReaderMessages::kResponseNoInstance, context) {}

ZKLXEHResponse::~ZKLXEHResponse() = default;

IMessage* ZKLXEHResponse::CreateMessage(IInstance& instance) {
    return instance.CreatePosResponse();
}

ZMessage* ZKLXEHResponse::CreateModelMessage(ZInstance& instance) {
    return instance.CreatePosResponse();
}

}  // namespace Korvel
