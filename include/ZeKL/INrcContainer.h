// The negative response code table of an ECU, keyed by code.
#pragma once

#include <ZeKL/IContainer.h>
#include <ZeKL/INrcItem.h>

namespace Korvel {

// Note: GetNrc has an index overload (uint32_t) and a code overload (uint8_t); pass a
// typed value (GetNrc(0u), GetNrc(uint8_t{0x10})) so the call is not ambiguous.
class ZEKL_API INrcContainer : public virtual IContainer {
public:
    virtual bool Contains(uint8_t code) const = 0;
    // Adds a copy; its index, or InvalidIndex when the code is present.
    virtual uint32_t AddNrc(const INrcItem& item) = 0;
    virtual uint32_t AddNrc(uint8_t code, const char* text) = 0;
    // Replaces the entry at index; false when out of range. The new code is not indexed.
    virtual bool SetNrc(uint32_t index, const INrcItem& item) = 0;
    virtual bool SetNrc(uint32_t index, uint8_t code, const char* text) = 0;
    // Entry at index, or null.
    virtual const INrcItem* GetNrc(uint32_t index) const = 0;
    virtual INrcItem* GetNrc(uint32_t index) = 0;
    // Entry with code, or null.
    virtual const INrcItem* GetNrc(uint8_t code) const = 0;
    virtual INrcItem* GetNrc(uint8_t code) = 0;
    ~INrcContainer() override;
};

}  // namespace Korvel
