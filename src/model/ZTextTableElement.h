// One entry of a text table: a raw value text and the text shown for it.
#pragma once

#include "model/ZModelItem.h"
#include "model/ZTextPack.h"

#include <ZeKL/ITextTableElement.h>

namespace Korvel {

class ZTextTableElement : public ZModelItem, public ITextTableElement {
public:
    ZTextTableElement(const char* value, const char* text);
    ZTextTableElement(const ZTextTableElement& other);
    explicit ZTextTableElement(const ITextTableElement& other);
    ZTextTableElement& operator=(const ZTextTableElement&) = delete;
    ~ZTextTableElement() override;

    void Assign(const ITextTableElement& other) override;
    const char* GetValue() const override;
    void SetValue(const char* value) override;
    const char* GetText() const override;
    void SetText(const char* text) override;

    void Accept(IConstModelItemVisitor& visitor) const override;
    void Accept(IConstModelItemVisitor& visitor) override;

private:
    enum Slot { kValue, kText, kSlotCount };
    ZTextPack<kSlotCount> m_texts;
};

}  // namespace Korvel
