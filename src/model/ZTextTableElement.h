// One entry of a text table: a raw value text and the text shown for it.
#pragma once

#include "model/ZModelItem.h"
#include "model/ZTextPack.h"

#include <ZeKL/ITextTableElement.h>

namespace Korvel {

class ZTextTableElement : public ZModelItem, public ITextTableElement {
public:
    // The texts the item keeps, in their order.
    using TextList = std::array<const char*, 2>;

    ZTextTableElement(const char* value, const char* text);
    // The same as MakeItemWithPack builds it: value and text in `storage`.
    ZTextTableElement(char* storage, const TextList& texts);
    ZTextTableElement(const ZTextTableElement& other);
    explicit ZTextTableElement(const ITextTableElement& other);
    ZTextTableElement& operator=(const ZTextTableElement&) = delete;
    ~ZTextTableElement() override;

    static constexpr bool IsKind(ZItemKind kind) { return kind == ZItemKind::TextTableElement; }
    ZItemKind Kind() const override { return ZItemKind::TextTableElement; }
    std::size_t BlockBytes() const override { return sizeof(ZTextTableElement) + m_texts.StorageBytes(); }

    void Assign(const ITextTableElement& other) override;
    const char* GetValue() const override;
    void SetValue(const char* value) override;
    const char* GetText() const override;
    void SetText(const char* text) override;

    void Accept(IConstModelItemVisitor& visitor) const override;
    void Accept(IConstModelItemVisitor& visitor) override;

    enum Slot { kValue, kText, kSlotCount };

private:
    ZTextPack<kSlotCount> m_texts;
};

}  // namespace Korvel
