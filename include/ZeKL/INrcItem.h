// One negative response code and its text.
#pragma once

#include <ZeKL/IModelItem.h>

namespace Korvel {

class ZEKL_API INrcItem : public virtual IModelItem {
public:
    // Copies code and text (not the parent); self-assignment does nothing.
    virtual void Assign(const INrcItem& other) = 0;
    virtual uint8_t GetCode() const = 0;
    virtual void SetCode(uint8_t code) = 0;
    // Never null; may be empty.
    virtual const char* GetText() const = 0;
    // Copies the text; must not be null.
    virtual void SetText(const char* text) = 0;
    ~INrcItem() override;
};

}  // namespace Korvel
