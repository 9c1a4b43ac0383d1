// The parse result of the reader-side parser as numbers and as one summary line.
#pragma once

#include "reader/IKLXmlParser.h"

#include <string>

namespace Korvel {

class IKLXmlParserExt : public IKLXmlParser {
public:
    // Both outputs receive the error count (untouched without a sink); the result tells
    // whether the last parse succeeded, false without a parser.
    virtual bool GetParseCounts(uint32_t& errors, uint32_t& warnings) const = 0;
    virtual std::string GetParseSummary() const = 0;
};

}  // namespace Korvel
