// One negative response code and its text.
#pragma once

#include "model/ZModelItem.h"
#include "model/ZTextPack.h"

#include <ZeKL/INrcItem.h>

#include <string>

namespace Korvel {

class ZNrcItem : public ZModelItem, public INrcItem {
public:
    // The texts the item keeps, in their order.
    using TextList = std::array<const char*, 1>;

    ZNrcItem(uint8_t code, const char* text);
    // The same as MakeItemWithPack builds it: the text in `storage`.
    ZNrcItem(char* storage, const TextList& text, uint8_t code);
    ZNrcItem(const ZNrcItem& other);
    explicit ZNrcItem(const INrcItem& other);
    ZNrcItem& operator=(const ZNrcItem&) = delete;
    ~ZNrcItem() override;

    static constexpr bool IsKind(ZItemKind kind) { return kind == ZItemKind::NrcItem; }
    ZItemKind Kind() const override { return ZItemKind::NrcItem; }
    std::size_t BlockBytes() const override { return sizeof(ZNrcItem) + m_text.StorageBytes(); }

    void Assign(const INrcItem& other) override;
    uint8_t GetCode() const override;
    void SetCode(uint8_t code) override;
    const char* GetText() const override;
    void SetText(const char* text) override;

    void Accept(IConstModelItemVisitor& visitor) const override;
    void Accept(IConstModelItemVisitor& visitor) override;

private:
    ZTextPack<1> m_text;
    uint8_t m_code;
};

}  // namespace Korvel
