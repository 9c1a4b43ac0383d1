#include "model/ZNrcItem.h"

#include "model/TextOrEmpty.h"

#include <ZeKL/IConstModelItemVisitor.h>

namespace Korvel {

ZNrcItem::ZNrcItem(uint8_t code, const char* text) : ZNrcItem(nullptr, {text}, code) {}

ZNrcItem::ZNrcItem(char* storage, const TextList& text, uint8_t code) : m_text(text, storage), m_code(code) {}

ZNrcItem::ZNrcItem(const ZNrcItem& other)
    : IModelItem(), ZModelItem(), INrcItem(), m_text(other.m_text), m_code(other.m_code) {}

ZNrcItem::ZNrcItem(const INrcItem& other) : ZNrcItem(other.GetCode(), other.GetText()) {}

ZNrcItem::~ZNrcItem() = default;

void ZNrcItem::Assign(const INrcItem& other) {
    if (&other == this) {
        return;
    }
    m_code = other.GetCode();
    m_text.Set(0, other.GetText());
}

uint8_t ZNrcItem::GetCode() const {
    return m_code;
}

void ZNrcItem::SetCode(uint8_t code) {
    m_code = code;
}

const char* ZNrcItem::GetText() const {
    return m_text.Get(0);
}

void ZNrcItem::SetText(const char* text) {
    m_text.Set(0, text);
}

void ZNrcItem::Accept(IConstModelItemVisitor& visitor) const {
    visitor.VisitNrcItem(*this);
}

void ZNrcItem::Accept(IConstModelItemVisitor& visitor) {
    visitor.VisitNrcItem(*this);
}

}  // namespace Korvel
