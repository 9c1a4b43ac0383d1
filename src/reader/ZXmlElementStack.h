// Stack of open elements. It shares ownership of its records with the handlers that made
// them, so a record lives exactly as long as its element is open or its handler may still
// hand it out: the memory of a parse grows with the nesting depth, not with the document.
#pragma once

#include "reader/IXmlElementStack.h"

#include <vector>

namespace Korvel {

class ZXmlElementStack : public IXmlElementStack {
public:
    ZXmlElementStack();
    ~ZXmlElementStack() override;

    bool IsEmpty() const override;
    void Push(std::shared_ptr<IXmlElement> element) override;
    void Pop() override;
    IXmlElement* Top() const override;
    // Number of records on the stack.
    std::size_t GetSize() const;

private:
    std::vector<std::shared_ptr<IXmlElement>> elements_;
};

}  // namespace Korvel
