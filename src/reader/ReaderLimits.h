// Limits that keep a read bounded whatever the input. Documents of the format nest five
// levels deep and carry no document type declaration, so none of these limits touches them.
//
// - kMaxElementDepth: the deepest nesting of open elements (known or unknown) a document may
//   have. One element more is a fatal error that ends the read with no result, so a document
//   nested 100,000 levels deep cannot exhaust the stack or the memory of the parse.
// - kEntityExpansionLimit: the most entity references the XML library expands in one
//   document (its SecurityManager). An entity-expansion bomb ("billion laughs") ends as a
//   fatal error of the XML library long before it costs time or memory.
// - Expansion budget: once a document declares a DOCTYPE, the text it delivers (attribute
//   values and character data, counted in UTF-16 units) may not exceed the size of the
//   document in bytes. Every character of a document without entity declarations comes from
//   at least one byte, so only documents that multiply text through entities or attribute
//   defaults of a document type declaration reach it; they end as a fatal error with no
//   result. The budget applies to files, memory buffers and texts, whose size the reader
//   knows.
// - External entities and external document type definitions are never loaded: nothing but
//   the named document is opened, on disk or on the network (see ZXmlParser::Parse).
#pragma once

#include <cstddef>

namespace Korvel::ReaderLimits {

inline constexpr unsigned kMaxElementDepth = 1000;
inline constexpr std::size_t kEntityExpansionLimit = 10000;

}  // namespace Korvel::ReaderLimits
