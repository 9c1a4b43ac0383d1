#include "reader/handlers/ZKLXEHNegativeResponse.h"

namespace Korvel {

ZKLXEHNegativeResponse::ZKLXEHNegativeResponse(const ZKLXEHContext& context, const XMLCh* tagName)
    : ZKLXEHMessage(tagName, KLTag::NegativeResponse, ReaderMessages::kNegativeResponseTexts,
                    ReaderMessages::kNegativeResponseNoInstance, context) {}

ZKLXEHNegativeResponse::~ZKLXEHNegativeResponse() = default;

IMessage* ZKLXEHNegativeResponse::CreateMessage(IInstance& instance) {
    return instance.CreateNegResponse();
}

ZMessage* ZKLXEHNegativeResponse::CreateModelMessage(ZInstance& instance) {
    return instance.CreateNegResponse();
}

}  // namespace Korvel
