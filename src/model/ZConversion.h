// A conversion: a linear formula (factor, offset) or a value-to-text table, under a unique id.
#pragma once

#include "model/ZModelItem.h"
#include "model/ZModelMemory.h"
#include "model/ZTextTable.h"

#include <ZeKL/IConversion.h>

#include <string>

namespace Korvel {

class ZConversion : public ZModelItem, public IConversion {
public:
    // Empty id, kind not set, factor 0.0. The default factor differs on purpose from the
    // table constructor's 1.0: both are relied upon.
    ZConversion();
    // Formula conversion.
    ZConversion(const char* id, uint32_t type, double factor, double offset);
    // Text-table conversion: a sorted copy of the table, factor 1.0, offset 0.0.
    ZConversion(const char* id, uint32_t type, const ITextTable& table);
    // Copies; the text table comes out sorted by value text.
    ZConversion(const ZConversion& other);
    explicit ZConversion(const IConversion& other);
    ZConversion& operator=(const ZConversion&) = delete;
    ~ZConversion() override;

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
    ZModelString m_id;
    uint32_t m_type;
    ZTextTable m_table;
    double m_factor;
    double m_offset;
};

}  // namespace Korvel
