// Value-to-text table of a conversion, keyed by value text.
#pragma once

#include <ZeKL/IContainer.h>
#include <ZeKL/ITextTableElement.h>

namespace Korvel {

// Note: GetElement has an index overload (uint32_t) and a value overload (const char*);
// pass GetElement(0u) for the first entry.
class ZEKL_API ITextTable : public virtual IContainer {
public:
    // Appends copies of the other's entries in its index order, skipping values present.
    virtual void AddElements(const ITextTable& other) = 0;
    // Adds a copy; its index, or InvalidIndex when the value is present.
    virtual uint32_t AddElement(const ITextTableElement& element) = 0;
    virtual uint32_t AddElement(const char* value, const char* text) = 0;
    // Replaces the entry at index; false when out of range. The new value is not indexed.
    virtual bool SetElement(uint32_t index, const ITextTableElement& element) = 0;
    virtual bool SetElement(uint32_t index, const char* value, const char* text) = 0;
    // Entry with value, or null.
    virtual const ITextTableElement* GetElement(const char* value) const = 0;
    virtual ITextTableElement* GetElement(const char* value) = 0;
    // Entry at index, or null.
    virtual const ITextTableElement* GetElement(uint32_t index) const = 0;
    virtual ITextTableElement* GetElement(uint32_t index) = 0;
    ~ITextTable() override;
};

}  // namespace Korvel
