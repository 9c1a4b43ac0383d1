#include "reader/ZXmlElementHandler.h"

namespace Korvel {

ZXmlElementHandler::ZXmlElementHandler(const XMLCh* tagName) {
    if (tagName != nullptr) {
        tagName_ = tagName;
    }
}

ZXmlElementHandler::~ZXmlElementHandler() = default;

const XMLCh* ZXmlElementHandler::GetTagName() const {
    return tagName_.c_str();
}

void ZXmlElementHandler::SetText(const XMLCh* chars, XMLSize_t length) {
    if (chars == nullptr) {
        text_.clear();
        return;
    }
    text_.assign(chars, length);
}

const XMLCh* ZXmlElementHandler::GetText() const {
    return text_.c_str();
}

bool ZXmlElementHandler::IsHandlerFor(const XMLCh* tag) const {
    return tag != nullptr && tagName_.compare(tag) == 0;
}

}  // namespace Korvel
