// Where an item sits in a description, by the ids that lead to it: the service instance, its
// message and parameter, or a conversion and its table entry, or a negative response code.
#pragma once

#include <ZeKL/Types.h>

#include <string>

namespace Korvel {

// Empty fields name nothing: a path of an instance has no message, a path of the ECU itself
// is all empty. Ids are the document's texts (UTF-8); a parameter id may itself be empty.
struct ItemPath {
    std::string instance;    // id of the service instance
    std::string message;     // "REQUEST", "RESPONSE" or "NEGATIVE_RESPONSE"
    std::string parameter;   // id of the parameter
    std::string conversion;  // id of the conversion
    std::string entry;       // value of a text-table entry of the conversion
    std::string nrc;         // a negative response code, in decimal

    bool IsEmpty() const {
        return instance.empty() && message.empty() && parameter.empty() && conversion.empty() &&
               entry.empty() && nrc.empty();
    }
};

// The path as one line: "Instance/RESPONSE/Parameter", "conversion Id", "conversion Id/entry 3",
// "nrc 16"; empty for an empty path (and on allocation failure).
ZEKL_API std::string ItemPathText(const ItemPath& path);

}  // namespace Korvel
