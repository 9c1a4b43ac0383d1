// Parses a document from a file or from memory; the result tells whether it succeeded.
#pragma once

#include <cstdint>

namespace Korvel {

class IXmlParser {
public:
    // An empty encoding lets the document's own declaration decide.
    virtual bool ParseFile(const char* path, const char* encoding) = 0;
    virtual bool ParseMemory(const char* data, uint32_t length, const char* encoding) = 0;
    virtual ~IXmlParser() = default;
};

}  // namespace Korvel
