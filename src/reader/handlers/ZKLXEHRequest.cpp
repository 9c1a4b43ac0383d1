#include "reader/handlers/ZKLXEHRequest.h"

namespace Korvel {

ZKLXEHRequest::ZKLXEHRequest(const ZKLXEHContext& context, const XMLCh* tagName)
    : ZKLXEHMessage(tagName, KLTag::Request, ReaderMessages::kRequestTexts,
                    ReaderMessages::kRequestNoInstance, context) {}

ZKLXEHRequest::~ZKLXEHRequest() = default;

IMessage* ZKLXEHRequest::CreateMessage(IInstance& instance) {
    return instance.CreateRequest();
}

ZMessage* ZKLXEHRequest::CreateModelMessage(ZInstance& instance) {
    return instance.CreateRequest();
}

}  // namespace Korvel
