// Handler of one tag: receives the open tag with its attributes, the character data and the
// close tag of every element of that tag, and hands the frame the record to push or pop.
#pragma once

#include "reader/IXmlElement.h"

#include <xercesc/sax/AttributeList.hpp>

#include <memory>

namespace Korvel {

class IXmlElementHandler {
public:
    virtual const XMLCh* GetTagName() const = 0;
    virtual void StartElement(const XMLCh* tag, xercesc::AttributeList& attributes) = 0;
    virtual void SetText(const XMLCh* chars, XMLSize_t length) = 0;
    // The record the frame pushes after StartElement and pops after EndElement; null for none.
    virtual std::shared_ptr<IXmlElement> GetCurrentElement() const = 0;
    // Whether GetCurrentElement would give a record, without taking a share of it.
    virtual bool HasCurrentElement() const { return GetCurrentElement() != nullptr; }
    virtual void EndElement(const XMLCh* tag) = 0;
    virtual ~IXmlElementHandler() = default;
    virtual const XMLCh* GetText() const = 0;
    virtual bool IsHandlerFor(const XMLCh* tag) const = 0;
};

}  // namespace Korvel
