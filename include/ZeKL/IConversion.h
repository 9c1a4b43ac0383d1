// A conversion: linear formula (factor, offset) or value-to-text table.
#pragma once

#include <ZeKL/ITextTable.h>

namespace Korvel {

class ZEKL_API IConversion : public virtual IModelItem {
public:
    // Conversion kind as stored (a ConversionKind value; 0xFFFFFFFF when not set).
    virtual uint32_t GetType() const = 0;
    virtual void SetType(uint32_t type) = 0;
    virtual const char* GetId() const = 0;
    // Does not re-key the conversion in its container.
    virtual void SetId(const char* id) = 0;
    virtual double GetFactor() const = 0;
    virtual void SetFactor(double factor) = 0;
    virtual double GetOffset() const = 0;
    virtual void SetOffset(double offset) = 0;
    // True when the text table has at least one entry.
    virtual bool HasTextTable() const = 0;
    virtual uint32_t GetTextTableSize() const = 0;
    // The own table, or null when it is empty.
    virtual const ITextTable* GetTextTable() const = 0;
    virtual ITextTable* GetTextTable() = 0;
    // Replaces the table's content by copies of the given entries, sorted by value text.
    virtual void SetTextTable(const ITextTable& table) = 0;
    // Index of the new entry, or InvalidIndex when the value is present.
    virtual uint32_t AddTextTableElement(const char* value, const char* text) = 0;
    // Entry at index, or null.
    virtual const ITextTableElement* GetTextTableElement(uint32_t index) const = 0;
    virtual ITextTableElement* GetTextTableElement(uint32_t index) = 0;
    ~IConversion() override;
};

}  // namespace Korvel
