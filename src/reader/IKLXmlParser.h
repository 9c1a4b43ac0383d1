// The reader-side parser: registration of the tag handlers, the reporting sink, and the ECU
// the handlers build.
#pragma once

#include "reader/IXmlElementHandler.h"
#include "reader/IXmlParser.h"

#include <ZeKL/IEcu.h>
#include <ZeKL/IReporting.h>

#include <memory>

namespace Korvel {

class ZKLXmlElementStack;

class IKLXmlParser : public virtual IXmlParser {
public:
    // The first handler registered for a tag stays.
    virtual void RegisterHandler(const std::shared_ptr<IXmlElementHandler>& handler) = 0;
    virtual void SetReporting(std::shared_ptr<IReporting> reporting) = 0;
    // Null when the inner frame could not be built.
    virtual ZKLXmlElementStack* GetElementStack() const = 0;
    // The ECU under construction; null after TakeEcu.
    virtual IEcu* GetEcu() const = 0;
    // Hands the ECU to the caller; the parser forgets it.
    virtual std::unique_ptr<IEcu> TakeEcu() = 0;
};

}  // namespace Korvel
