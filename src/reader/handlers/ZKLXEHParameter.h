// Handler of PARAMETER: adds a parameter to the message on top of the stack; a parameter with a
// missing or invalid attribute is refused with the whole list of its problems in one message.
#pragma once

#include "reader/handlers/KLTags.h"
#include "reader/handlers/ZKLXEH.h"

#include <string>

namespace Korvel {

class ZKLXEHParameter : public ZKLXEH {
public:
    explicit ZKLXEHParameter(const ZKLXEHContext& context, const XMLCh* tagName = KLTags::kParameter);
    ~ZKLXEHParameter() override;
    void StartElement(const XMLCh* tag, xercesc::AttributeList& attributes) override;
    void EndElement(const XMLCh* tag) override;

private:
    // The new parameter, or null (reported) when an attribute fails or the id is used. The
    // texts go in as they are narrowed, in one block.
    ZParam* AddParam(ZMessage& message, const xercesc::AttributeList& attributes);

    // UTF-8 texts of the parameter being added, reused from one element to the next.
    std::string scratch_;
};

}  // namespace Korvel
