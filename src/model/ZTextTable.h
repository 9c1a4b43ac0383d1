// Value-to-text table of a conversion: entries in order of addition, keyed by value text.
#pragma once

#include "model/ZContainerBase.h"
#include "model/ZTextTableElement.h"

#include <ZeKL/ITextTable.h>

#include <string>

namespace Korvel {

class ZTextTable : public ZContainerBase<std::string, ZTextTableElement>, public ITextTable {
public:
    // With an arena, the list and index are kept there.
    explicit ZTextTable(ZModelArena* arena = nullptr);
    // Copies in value order (see Assign).
    ZTextTable(const ZTextTable& other);
    ZTextTable& operator=(const ZTextTable&) = delete;
    ~ZTextTable() override;

    static constexpr bool IsKind(ZItemKind kind) { return kind == ZItemKind::TextTable; }
    ZItemKind Kind() const override { return ZItemKind::TextTable; }

    // Clears this table and copies the other's entries by walking its value map in value order.
    // Copies therefore hold their entries sorted by value text, and entries the other reaches by
    // index only (after SetElement) are left out. Self-assignment changes nothing.
    void Assign(const ITextTable& other);

    // Copies the entry at an index into `out`; false when out of range.
    bool CopyElement(uint32_t index, ZTextTableElement& out) const;

    using ZContainerBase::Contains;
    bool Contains(const char* value) const;

    void AddElements(const ITextTable& other) override;
    uint32_t AddElement(const ITextTableElement& element) override;
    uint32_t AddElement(const char* value, const char* text) override;
    bool SetElement(uint32_t index, const ITextTableElement& element) override;
    bool SetElement(uint32_t index, const char* value, const char* text) override;
    const ITextTableElement* GetElement(const char* value) const override;
    ITextTableElement* GetElement(const char* value) override;
    const ITextTableElement* GetElement(uint32_t index) const override;
    ITextTableElement* GetElement(uint32_t index) override;

    void Accept(IConstModelItemVisitor& visitor) const override;
    void Accept(IConstModelItemVisitor& visitor) override;
};

}  // namespace Korvel
