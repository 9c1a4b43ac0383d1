#include "reader/handlers/ZKLXEHNegativeResponse.h"

namespace Korvel {

ZKLXEHNegativeResponse::ZKLXEHNegativeResponse(const ZKLXEHContext& context, const XMLCh* tagName)
    : ZKLXEHMessage(tagName, KLTag::NegativeResponse, ReaderMessages::kNegativeResponseTexts,
                    ReaderMessages::kNegativeResponseNoInstance, MessageKindNegResponse, context) {}

ZKLXEHNegativeResponse::~ZKLXEHNegativeResponse() = default;

}  // namespace Korvel
