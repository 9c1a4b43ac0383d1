#include "model/ZConversion.h"

#include "model/TextOrEmpty.h"

#include <ZeKL/IConstModelItemVisitor.h>

namespace Korvel {

ZConversion::ZConversion()
    : m_type(static_cast<uint32_t>(ConversionKind::NotSet)), m_factor(0.0), m_offset(0.0) {
    m_table.SetParent(this);
}

ZConversion::ZConversion(const char* id, uint32_t type, double factor, double offset)
    : ZConversion(nullptr, {id}, type, factor, offset, nullptr) {}

ZConversion::ZConversion(char* storage, const TextList& id, uint32_t type, double factor, double offset,
                         ZModelArena* tableArena)
    : m_id(id, storage), m_type(type), m_table(tableArena), m_factor(factor), m_offset(offset) {
    m_table.SetParent(this);
}

ZConversion::ZConversion(const char* id, uint32_t type, const ITextTable& table)
    : m_id({id}, nullptr), m_type(type), m_factor(1.0), m_offset(0.0) {
    m_table.Assign(table);
    m_table.SetParent(this);
}

ZConversion::ZConversion(const ZConversion& other)
    : IModelItem(),
      ZModelItem(),
      IConversion(),
      m_id(other.m_id),
      m_type(other.m_type),
      m_table(other.m_table),
      m_factor(other.m_factor),
      m_offset(other.m_offset) {
    m_table.SetParent(this);
}

ZConversion::ZConversion(const IConversion& other)
    : m_id({other.GetId()}, nullptr),
      m_type(other.GetType()),
      m_factor(other.GetFactor()),
      m_offset(other.GetOffset()) {
    if (const ITextTable* table = other.GetTextTable()) {
        m_table.Assign(*table);
    }
    m_table.SetParent(this);
}

ZConversion::~ZConversion() = default;

uint32_t ZConversion::GetType() const {
    return m_type;
}

void ZConversion::SetType(uint32_t type) {
    m_type = type;
}

const char* ZConversion::GetId() const {
    return m_id.Get(0);
}

void ZConversion::SetId(const char* id) {
    m_id.Set(0, id);
}

double ZConversion::GetFactor() const {
    return m_factor;
}

void ZConversion::SetFactor(double factor) {
    m_factor = factor;
}

double ZConversion::GetOffset() const {
    return m_offset;
}

void ZConversion::SetOffset(double offset) {
    m_offset = offset;
}

bool ZConversion::HasTextTable() const {
    return m_table.GetCount() > 0;
}

uint32_t ZConversion::GetTextTableSize() const {
    return m_table.GetCount();
}

// An empty table is never handed out: callers tell a formula conversion by the null.
const ITextTable* ZConversion::GetTextTable() const {
    return HasTextTable() ? &m_table : nullptr;
}

ITextTable* ZConversion::GetTextTable() {
    return HasTextTable() ? &m_table : nullptr;
}

// The given entries are first gathered by index into a fresh table, which is then copied in
// value order; given the own table, the entries stay and come out sorted.
void ZConversion::SetTextTable(const ITextTable& table) {
    ZTextTable gathered;
    gathered.AddElements(table);
    m_table.Assign(gathered);
    m_table.SetParent(this);
}

uint32_t ZConversion::AddTextTableElement(const char* value, const char* text) {
    return m_table.AddElement(value, text);
}

const ITextTableElement* ZConversion::GetTextTableElement(uint32_t index) const {
    return m_table.GetElement(index);
}

ITextTableElement* ZConversion::GetTextTableElement(uint32_t index) {
    return m_table.GetElement(index);
}

void ZConversion::Accept(IConstModelItemVisitor& visitor) const {
    visitor.VisitConversion(*this);
}

void ZConversion::Accept(IConstModelItemVisitor& visitor) {
    visitor.VisitConversion(*this);
}

}  // namespace Korvel
