// Limits that keep a read bounded whatever the input. Documents of the format nest five
// levels deep and carry no document type declaration, so none of these limits touches them.
//
// - kMaxElementDepth: the deepest nesting of open elements (known or unknown) a document may
//   have. One element more is a fatal error that ends the read with no result, so a document
//   nested 100,000 levels deep cannot exhaust the stack or the memory of the parse.
// - Entity declarations: the first one, general or parameter, internal or external, is a
//   fatal error that ends the read with no result. The format uses no entities of its own
//   (the five predefined ones and character references stay as XML has them), and an
//   expansion limit alone cannot keep a read bounded: a few thousand references to one large
//   entity in an attribute value, or references inside the attribute defaults of a document
//   type declaration (which the XML library does not count), make the library build text
//   far beyond the document's size before any callback could stop it.
// - kEntityExpansionLimit: the most entity references the XML library expands in one
//   document (its SecurityManager), a second line behind the rule above.
// - Expansion budget: once a document declares a DOCTYPE, the text it delivers (attribute
//   values and character data, counted in UTF-16 units) may not exceed the size of the
//   document in bytes. Only attribute defaults repeated on many elements reach it now; they
//   end as a fatal error with no result. The budget applies to files, memory buffers and
//   texts, whose size the reader knows.
// - External entities and external document type definitions are never loaded: nothing but
//   the named document is opened, on disk or on the network (see ZXmlParser::Parse).
// - kMaxDocumentBytes: a read from memory takes a 32-bit length, so ReadText refuses a longer
//   text with a fatal message instead of reading only the part that the cut length names.
// - kDocumentTestBytes: the document test (IsKorvelFile) looks at the first five lines of a
//   file, but only within its first 64 KiB: a file of one line of hundreds of megabytes is
//   not read whole to find its end. A description's "<ECU" stands on its first or second line.
#pragma once

#include <cstddef>
#include <cstdint>

namespace Korvel::ReaderLimits {

inline constexpr unsigned kMaxElementDepth = 1000;
inline constexpr std::size_t kEntityExpansionLimit = 10000;
inline constexpr uint64_t kMaxDocumentBytes = UINT32_MAX;
inline constexpr std::size_t kDocumentTestBytes = std::size_t{64} << 10;

}  // namespace Korvel::ReaderLimits
