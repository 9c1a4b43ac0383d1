// Root of one diagnostic description.
#pragma once

#include <ZeKL/IConversionContainer.h>
#include <ZeKL/IInstanceContainer.h>
#include <ZeKL/INrcContainer.h>

namespace Korvel {

class ZEKL_API IEcu : public virtual IModelItem {
public:
    // Always "1.0".
    virtual const char* GetFormatVersion() const = 0;
    // ProtocolUds (0) or ProtocolKwp (1), or any value set.
    virtual uint32_t GetProtocol() const = 0;
    virtual void SetProtocol(uint32_t protocol) = 0;
    // Replaces the table's content by copies (given the ECU's own table, it ends up empty).
    virtual void SetNrcContainer(const INrcContainer& nrcs) = 0;
    // Never null.
    virtual const INrcContainer* GetNrcContainer() const = 0;
    virtual INrcContainer* GetNrcContainer() = 0;
    virtual void SetInstanceContainer(const IInstanceContainer& instances) = 0;
    virtual const IInstanceContainer* GetInstanceContainer() const = 0;
    virtual IInstanceContainer* GetInstanceContainer() = 0;
    virtual void SetConversionContainer(const IConversionContainer& conversions) = 0;
    virtual const IConversionContainer* GetConversionContainer() const = 0;
    virtual IConversionContainer* GetConversionContainer() = 0;
    ~IEcu() override;
};

}  // namespace Korvel
