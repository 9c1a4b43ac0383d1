// How the lint's findings and the differences of two documents are printed: lines a person
// reads, or JSON for a script. Separate from the commands' arguments.
#pragma once

#include "JsonOutput.h"

#include <ZeKL/ZeKL.h>

#include <string>
#include <vector>

namespace zekl {

struct FindingCounts {
    size_t errors = 0;
    size_t warnings = 0;
    size_t infos = 0;
};

FindingCounts CountFindings(const std::vector<Korvel::LintFinding>& findings);

// One line per finding, "FILE:LINE:COLUMN: SEVERITY: PATH: text [rule]", then a line with the
// counts, or one saying the document is clean.
std::string FindingsText(const std::string& path, const std::vector<Korvel::LintFinding>& findings);

// {"file", "read", "failed", "severity", "counts", "findings": [{rule, severity, line, column,
// path, text}]}.
Json FindingsJson(const std::string& path, bool read, const std::string& severity, bool failed,
                  const std::vector<Korvel::LintFinding>& findings);

// The differences grouped by instance: first the protocol, NRCs and conversions, one line
// each, then for each instance its own line or a heading with its changes indented; a last
// line with the number of differences ("no differences" when there are none).
std::string DifferencesText(const std::vector<Korvel::DiffEntry>& entries);

// {"before", "after", "equal", "differences": [{change, item, path, attribute, before, after}]}.
Json DifferencesJson(const std::string& before, const std::string& after,
                     const std::vector<Korvel::DiffEntry>& entries);

// "PATH:LINE:COLUMN: REST\n", or "PATH: REST\n" when the line is 0 (no place known).
std::string PlacedLine(const std::string& path, uint32_t line, uint32_t column, const std::string& rest);

}  // namespace zekl
