#include <ZeKL/ZeKL.h>

#include <cstdio>

#include "Arguments.h"
#include "Commands.h"
#include "Console.h"
#include "Document.h"
#include "Output.h"

namespace zekl {

namespace {

const char* const kLintHelp =
    "Usage: zekl lint FILE [--severity error|warning|info] [--json]\n"
    "\n"
    "Reads the description document FILE and checks what it says beyond what the reader\n"
    "checks: parameters that overlap or leave holes, constants without a byte image,\n"
    "conversions that name nothing or that nothing uses, type names and semantics words\n"
    "that read by accident, service ids of requests and responses, requests that cannot\n"
    "be told apart, and more. The read's own ERROR and FATAL messages are findings too\n"
    "(rule 'read'). Every finding is printed, in document order, as\n"
    "\n"
    "  FILE:LINE:COLUMN: SEVERITY: ITEM: text [rule]\n"
    "\n"
    "where LINE and COLUMN are where the item's element starts and ITEM its path\n"
    "(Instance/RESPONSE/Parameter, conversion Id, nrc 16); a last line counts them or\n"
    "says the document is clean. docs/lint.md describes every rule with an example.\n"
    "\n"
    "Options:\n"
    "  --severity S  the least severity that fails the lint: error (default), warning or\n"
    "                info; findings below it are printed but do not fail\n"
    "  --json        print one JSON object: file, read, severity, failed, counts and the\n"
    "                findings (rule, severity, line, column, path, text)\n"
    "\n"
    "Exit status: 0 when no finding is at or above the severity, 1 when one is (or the\n"
    "file cannot be read or is refused), 2 for a usage error.\n";

Korvel::LintSeverity ParseSeverity(const std::string& text) {
    for (Korvel::LintSeverity severity :
         {Korvel::LintSeverity::Error, Korvel::LintSeverity::Warning, Korvel::LintSeverity::Info}) {
        if (text == Korvel::LintSeverityName(severity)) {
            return severity;
        }
    }
    throw UsageError("lint", "invalid severity '" + text + "' (use error, warning or info)");
}

// Severities are ordered from Error (0) to Info (2): "at or above" is "at most" in numbers.
bool Fails(const std::vector<Korvel::LintFinding>& findings, Korvel::LintSeverity threshold) {
    for (const Korvel::LintFinding& finding : findings) {
        if (static_cast<int32_t>(finding.severity) <= static_cast<int32_t>(threshold)) {
            return true;
        }
    }
    return false;
}

}  // namespace

int LintDocument(const std::string& path, Korvel::LintSeverity threshold, bool json) {
    std::string reason;
    if (!IsReadableDocument(path, reason)) {
        PrintError("cannot read " + Quoted(path) + ": " + reason);
        return ExitDocumentProblem;
    }
    std::vector<Korvel::LintFinding> findings;
    const bool read = Korvel::LintFile(path.c_str(), findings);
    const bool failed = !read || Fails(findings, threshold);
    WriteAll(stdout, json ? FindingsJson(path, read, Korvel::LintSeverityName(threshold), failed, findings)
                          : FindingsText(path, findings));
    if (!read) {
        PrintError("cannot read " + Quoted(path) + ": the document was refused");
    }
    return failed ? ExitDocumentProblem : ExitSuccess;
}

int RunLint(const Words& args) {
    Arguments arguments("lint", {{"severity", 's', true}, {"json", 0, false}}, args);
    if (arguments.HelpRequested()) {
        std::fputs(kLintHelp, stdout);
        return ExitSuccess;
    }
    const Korvel::LintSeverity threshold = ParseSeverity(arguments.Value("severity", "error"));
    arguments.RequirePositionals({"FILE"});
    return LintDocument(arguments.Positionals()[0], threshold, arguments.Has("json"));
}

}  // namespace zekl
