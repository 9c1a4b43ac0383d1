// The conversions of an ECU, keyed by conversion id.
#pragma once

#include <ZeKL/IContainer.h>
#include <ZeKL/IConversion.h>

namespace Korvel {

// Note: GetConversion has an index overload (uint32_t) and an id overload (const char*);
// pass GetConversion(0u) for the first conversion.
class ZEKL_API IConversionContainer : public virtual IContainer {
public:
    virtual bool Contains(const char* id) const = 0;
    // Conversion at index, or null.
    virtual const IConversion* GetConversion(uint32_t index) const = 0;
    virtual IConversion* GetConversion(uint32_t index) = 0;
    // Conversion with id, or null.
    virtual IConversion* GetConversion(const char* id) = 0;
    // Adds a copy; its index, or InvalidIndex when the id is present.
    virtual uint32_t AddConversion(const IConversion& conversion) = 0;
    // Adds a formula conversion; index or InvalidIndex.
    virtual uint32_t AddConversion(const char* id, uint32_t type, double factor, double offset) = 0;
    // Adds a text-table conversion (factor 1.0, offset 0.0); index or InvalidIndex.
    virtual uint32_t AddConversion(const char* id, uint32_t type, const ITextTable& table) = 0;
    ~IConversionContainer() override;
};

}  // namespace Korvel
