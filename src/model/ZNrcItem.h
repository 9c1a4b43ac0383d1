// One negative response code and its text.
#pragma once

#include "model/ZModelItem.h"
#include "model/ZModelMemory.h"

#include <ZeKL/INrcItem.h>

#include <string>

namespace Korvel {

class ZNrcItem : public ZModelItem, public INrcItem {
public:
    ZNrcItem(uint8_t code, const char* text);
    ZNrcItem(const ZNrcItem& other);
    explicit ZNrcItem(const INrcItem& other);
    ZNrcItem& operator=(const ZNrcItem&) = delete;
    ~ZNrcItem() override;

    void Assign(const INrcItem& other) override;
    uint8_t GetCode() const override;
    void SetCode(uint8_t code) override;
    const char* GetText() const override;
    void SetText(const char* text) override;

    void Accept(IConstModelItemVisitor& visitor) const override;
    void Accept(IConstModelItemVisitor& visitor) override;

private:
    ZModelString m_text;
    uint8_t m_code;
};

}  // namespace Korvel
