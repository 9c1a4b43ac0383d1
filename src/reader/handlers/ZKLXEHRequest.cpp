#include "reader/handlers/ZKLXEHRequest.h"

namespace Korvel {

ZKLXEHRequest::ZKLXEHRequest(const ZKLXEHContext& context, const XMLCh* tagName)
    : ZKLXEHMessage(tagName, KLTag::Request, ReaderMessages::kRequestTexts,
                    ReaderMessages::kRequestNoInstance, MessageKindRequest, context) {}

ZKLXEHRequest::~ZKLXEHRequest() = default;

}  // namespace Korvel
