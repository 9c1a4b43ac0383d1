#include "model/ZNrcItem.h"

#include "model/TextOrEmpty.h"

#include <ZeKL/IConstModelItemVisitor.h>

namespace Korvel {

ZNrcItem::ZNrcItem(uint8_t code, const char* text) : m_text(TextOrEmpty(text)), m_code(code) {}

ZNrcItem::ZNrcItem(const ZNrcItem& other)
    : IModelItem(), ZModelItem(), INrcItem(), m_text(other.m_text), m_code(other.m_code) {}

ZNrcItem::ZNrcItem(const INrcItem& other) : m_text(other.GetText()), m_code(other.GetCode()) {}

ZNrcItem::~ZNrcItem() = default;

void ZNrcItem::Assign(const INrcItem& other) {
    if (&other == this) {
        return;
    }
    m_code = other.GetCode();
    m_text = other.GetText();
}

uint8_t ZNrcItem::GetCode() const {
    return m_code;
}

void ZNrcItem::SetCode(uint8_t code) {
    m_code = code;
}

const char* ZNrcItem::GetText() const {
    return m_text.c_str();
}

void ZNrcItem::SetText(const char* text) {
    m_text = TextOrEmpty(text);
}

void ZNrcItem::Accept(IConstModelItemVisitor& visitor) const {
    visitor.VisitNrcItem(*this);
}

void ZNrcItem::Accept(IConstModelItemVisitor& visitor) {
    visitor.VisitNrcItem(*this);
}

}  // namespace Korvel
