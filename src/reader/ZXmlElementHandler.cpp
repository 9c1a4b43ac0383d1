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

// One pass over both texts: called for every element the reader records.
bool ZXmlElementHandler::IsHandlerFor(const XMLCh* tag) const {
    if (tag == nullptr) {
        return false;
    }
    const std::size_t length = tagName_.size();
    const XMLCh* own = tagName_.data();
    for (std::size_t index = 0; index < length; ++index) {
        if (tag[index] != own[index]) {
            return false;
        }
    }
    return tag[length] == 0;
}

}  // namespace Korvel
