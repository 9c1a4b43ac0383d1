// The lint's read of a document: the reader's own read with an observer that records where each
// item's element starts and checks the number texts the reader reads without a word (a factor
// "1,5" reads as 1), then the rules over the model read.
#pragma once

#include "lint/ZItemPositions.h"
#include "reader/IXmlElementObserver.h"

#include <ZeKL/Lint.h>

#include <string>
#include <vector>

namespace Korvel {

class ZLintReader : public IXmlElementObserver {
public:
    // Reads and lints; false when the document was refused (the read's messages are findings).
    bool LintFile(const char* path, std::vector<LintFinding>& findings);
    bool LintText(const std::string& text, std::vector<LintFinding>& findings);

    void ElementStarted(const XMLCh* name, const xercesc::AttributeList& attributes,
                        const IXmlElement* record, XmlPosition start) override;

private:
    template <typename ReadCall>
    bool Lint(ReadCall&& read, std::vector<LintFinding>& findings);
    // A number attribute whose text is not wholly a number becomes a number-text finding.
    void CheckInteger(const xercesc::AttributeList& attributes, const char16_t* name, int64_t readAs,
                      const ItemPath& path, XmlPosition start);
    void CheckReal(const xercesc::AttributeList& attributes, const char16_t* name, double readAs,
                   const ItemPath& path, XmlPosition start);

    ZItemPositions positions_;
    std::vector<LintFinding> numberFindings_;
};

}  // namespace Korvel
