#include "reader/handlers/ZKLXEHResponse.h"

namespace Korvel {

ZKLXEHResponse::ZKLXEHResponse(const ZKLXEHContext& context, const XMLCh* tagName)
    : ZKLXEHMessage(tagName, KLTag::Response, ReaderMessages::kResponseTexts,
                    ReaderMessages::kResponseNoInstance, MessageKindPosResponse, context) {}

ZKLXEHResponse::~ZKLXEHResponse() = default;

}  // namespace Korvel
