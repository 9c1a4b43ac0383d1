// A conversion: a linear formula (factor, offset) or a value-to-text table, under a unique id.
#pragma once

#include "model/ZModelItem.h"
#include "model/ZTextPack.h"
#include "model/ZTextTable.h"

#include <ZeKL/IConversion.h>

#include <string>

namespace Korvel {

class ZConversion : public ZModelItem, public IConversion {
public:
    // The texts the item keeps, in their order.
    using TextList = std::array<const char*, 1>;

    // Empty id, kind not set, factor 0.0. The default factor differs on purpose from the
    // table constructor's 1.0: both are relied upon.
    ZConversion();
    // Formula conversion.
    ZConversion(const char* id, uint32_t type, double factor, double offset);
    // The same as MakeItemWithPack builds it: the id in `storage`, the text table's list and
    // index in `tableArena` (null: on the heap).
    ZConversion(char* storage, const TextList& id, uint32_t type, double factor, double offset,
                ZModelArena* tableArena);
    // Text-table conversion: a sorted copy of the table, factor 1.0, offset 0.0.
    ZConversion(const char* id, uint32_t type, const ITextTable& table);
    // Copies; the text table comes out sorted by value text.
    ZConversion(const ZConversion& other);
    explicit ZConversion(const IConversion& other);
    ZConversion& operator=(const ZConversion&) = delete;
    ~ZConversion() override;

    static constexpr bool IsKind(ZItemKind kind) { return kind == ZItemKind::Conversion; }
    // The text table with its own type, also while it is empty.
    ZTextTable& Table() { return m_table; }
    ZItemKind Kind() const override { return ZItemKind::Conversion; }
    std::size_t BlockBytes() const override { return sizeof(ZConversion) + m_id.StorageBytes(); }

    uint32_t GetType() const override;
    void SetType(uint32_t type) override;
    const char* GetId() const override;
    void SetId(const char* id) override;
    double GetFactor() const override;
    void SetFactor(double factor) override;
    double GetOffset() const override;
    void SetOffset(double offset) override;
    bool HasTextTable() const override;
    uint32_t GetTextTableSize() const override;
    const ITextTable* GetTextTable() const override;
    ITextTable* GetTextTable() override;
    void SetTextTable(const ITextTable& table) override;
    uint32_t AddTextTableElement(const char* value, const char* text) override;
    const ITextTableElement* GetTextTableElement(uint32_t index) const override;
    ITextTableElement* GetTextTableElement(uint32_t index) override;

    void Accept(IConstModelItemVisitor& visitor) const override;
    void Accept(IConstModelItemVisitor& visitor) override;

private:
    ZTextPack<1> m_id;
    uint32_t m_type;
    ZTextTable m_table;
    double m_factor;
    double m_offset;
};

}  // namespace Korvel
