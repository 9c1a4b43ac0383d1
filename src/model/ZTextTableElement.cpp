#include "model/ZTextTableElement.h"

#include <ZeKL/IConstModelItemVisitor.h>

namespace Korvel {

ZTextTableElement::ZTextTableElement(const char* value, const char* text)
    : ZTextTableElement(nullptr, {value, text}) {}

ZTextTableElement::ZTextTableElement(char* storage, const TextList& texts) : m_texts(texts, storage) {}

ZTextTableElement::ZTextTableElement(const ZTextTableElement& other)
    : IModelItem(), ZModelItem(), ITextTableElement(), m_texts(other.m_texts) {}

ZTextTableElement::ZTextTableElement(const ITextTableElement& other)
    : ZTextTableElement(other.GetValue(), other.GetText()) {}

ZTextTableElement::~ZTextTableElement() = default;

void ZTextTableElement::Assign(const ITextTableElement& other) {
    if (&other == this) {
        return;
    }
    m_texts.Assign({other.GetValue(), other.GetText()});
}

const char* ZTextTableElement::GetValue() const {
    return m_texts.Get(kValue);
}

void ZTextTableElement::SetValue(const char* value) {
    m_texts.Set(kValue, value);
}

const char* ZTextTableElement::GetText() const {
    return m_texts.Get(kText);
}

void ZTextTableElement::SetText(const char* text) {
    m_texts.Set(kText, text);
}

void ZTextTableElement::Accept(IConstModelItemVisitor& visitor) const {
    visitor.VisitTextTableElement(*this);
}

void ZTextTableElement::Accept(IConstModelItemVisitor& visitor) {
    visitor.VisitTextTableElement(*this);
}

}  // namespace Korvel
