// Common part of every tag handler: its tag name and the character data of its element.
#pragma once

#include "platform/Transcode.h"
#include "reader/IXmlElementHandler.h"

namespace Korvel {

class ZXmlElementHandler : public IXmlElementHandler {
public:
    explicit ZXmlElementHandler(const XMLCh* tagName);
    ~ZXmlElementHandler() override;

    const XMLCh* GetTagName() const override;
    // Replaces the text: of several pieces of character data of one element only the last
    // one is kept. Callers see the text of the last piece, as they always have.
    void SetText(const XMLCh* chars, XMLSize_t length) override;
    const XMLCh* GetText() const override;
    // Exact comparison by 16-bit units and length.
    bool IsHandlerFor(const XMLCh* tag) const override;

protected:
    const Platform::WideString& TagName() const { return tagName_; }

private:
    Platform::WideString text_;
    Platform::WideString tagName_;
};

}  // namespace Korvel
