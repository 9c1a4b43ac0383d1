#include "reader/ZXmlElementStack.h"

#include <utility>

namespace Korvel {

ZXmlElementStack::ZXmlElementStack() = default;

ZXmlElementStack::~ZXmlElementStack() = default;

bool ZXmlElementStack::IsEmpty() const {
    return elements_.empty();
}

void ZXmlElementStack::Push(std::shared_ptr<IXmlElement> element) {
    elements_.push_back(std::move(element));
}

// Unbalanced documents (a known close tag whose open tag was skipped) may ask for more pops
// than pushes; the surplus is ignored.
void ZXmlElementStack::Pop() {
    if (!elements_.empty()) {
        elements_.pop_back();
    }
}

IXmlElement* ZXmlElementStack::Top() const {
    return elements_.empty() ? nullptr : elements_.back().get();
}

std::size_t ZXmlElementStack::GetSize() const {
    return elements_.size();
}

}  // namespace Korvel
