// One entry of a text table: a raw value text and its description.
#pragma once

#include <ZeKL/IModelItem.h>

namespace Korvel {

class ZEKL_API ITextTableElement : public virtual IModelItem {
public:
    // Copies value and text; self-assignment does nothing.
    virtual void Assign(const ITextTableElement& other) = 0;
    virtual const char* GetValue() const = 0;
    virtual void SetValue(const char* value) = 0;
    virtual const char* GetText() const = 0;
    virtual void SetText(const char* text) = 0;
    ~ITextTableElement() override;
};

}  // namespace Korvel
