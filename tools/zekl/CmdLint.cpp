#include <ZeKL/ZeKL.h>

#include "Commands.h"
#include "Console.h"
#include "Document.h"
#include "Output.h"

namespace zekl {

namespace {

const CommandHelp kLintHelp = {
    "lint", "check a document's meaning: layouts, ids, types, conversions",
    "zekl lint FILE [--severity error|warning|info] [--json]",
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
    "says the document is clean. docs/lint.md describes every rule with an example.\n",
    "Exit status: 0 when no finding is at or above the severity, 1 when one is (or the\n"
    "file cannot be read or is refused), 2 for a usage error.\n"};

struct LintOptions {
    std::string file;
    std::string severity = "error";
    bool json = false;
};

void DefineLint(CLI::App& app, LintOptions& options) {
    AddDocumentArgument(app, options.file);
    app.add_option("-s,--severity", options.severity,
                   "the least severity that fails the lint: error (the default), warning or info, in any "
                   "letter case; findings below it are printed but do not fail")
        ->type_name("SEVERITY")
        ->transform(Choice({{"error", "error"}, {"warning", "warning"}, {"info", "info"}}, "invalid severity",
                           "use error, warning or info"));
    AddJsonFlag(app, options.json);
}

Korvel::LintSeverity SeverityNamed(const std::string& name) {
    for (Korvel::LintSeverity severity :
         {Korvel::LintSeverity::Error, Korvel::LintSeverity::Warning, Korvel::LintSeverity::Info}) {
        if (name == Korvel::LintSeverityName(severity)) {
            return severity;
        }
    }
    return Korvel::LintSeverity::Error;
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

int Lint(const LintOptions& options) {
    Document document(options.file, Korvel::ReportLevelError);
    std::vector<Korvel::LintFinding> findings;
    const bool read = document.Lint(findings);
    if (!read && findings.empty()) {
        throw Failure("cannot read " + document.Name() + ": " + document.Reason());
    }
    const Korvel::LintSeverity threshold = SeverityNamed(options.severity);
    const bool failed = !read || Fails(findings, threshold);
    PrintResult(options.json, FindingsJson(options.file, read, options.severity, failed, findings),
                FindingsText(options.file, findings));
    if (!read) {
        throw Failure("cannot read " + document.Name() + ": the document was refused");
    }
    return failed ? ExitDocumentProblem : ExitSuccess;
}

}  // namespace

void AddLintCommand(Cli& cli) {
    cli.Add(kLintHelp, DefineLint, Lint);
}

}  // namespace zekl
