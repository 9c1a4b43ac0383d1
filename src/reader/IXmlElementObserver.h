// Watches the elements of a parse with their positions, for callers that need to know where in
// the document each element stands (the lint's read).
#pragma once

#include "reader/IXmlElement.h"

#include <xercesc/sax/AttributeList.hpp>

#include <cstdint>

namespace Korvel {

// A place in the document as the XML library counts it: lines from 1, columns in characters
// from 1. 0 and 0 when unknown.
struct XmlPosition {
    uint32_t line = 0;
    uint32_t column = 0;
};

class IXmlElementObserver {
public:
    // After the handler of a known element ran: `record` is what the frame pushed for it (null
    // when nothing; a handler that appends nothing leaves its previous record there), `start`
    // the position of the element's "<".
    virtual void ElementStarted(const XMLCh* name, const xercesc::AttributeList& attributes,
                                const IXmlElement* record, XmlPosition start) = 0;
    virtual ~IXmlElementObserver() = default;
};

}  // namespace Korvel
