#include <ZeKL/ZeKL.h>

#include "Commands.h"
#include "Console.h"
#include "Document.h"
#include "Output.h"

namespace zekl {

namespace {

const CommandHelp kDiffHelp = {
    "diff", "what changed between two documents, matched by ids", "zekl diff A B [--order] [--json]",
    "Reads the description documents A (old) and B (new) and prints what changed from A\n"
    "to B, item by item: added, removed and changed instances, messages and parameters\n"
    "(each changed attribute with its old and new value), conversions (kind, factor,\n"
    "offset, table entries), NRCs and the protocol. Items are matched by their ids, and\n"
    "values by meaning (factor 0.5 and 0.50, value 0x22 and 34, semantics words in any\n"
    "order), so a reordered or reformatted document is equal to the original.\n"
    "\n"
    "The summary lists the protocol, NRCs and conversions first, then each instance with\n"
    "its changes indented below it; '+' added, '-' removed, '~' changed, '>' moved. One of\n"
    "A and B may be '-', standard input.\n",
    "Exit status: 0 when the documents are equal, 1 when they differ, 2 for a usage error\n"
    "or when a document cannot be read (so that 1 always means a difference).\n"};

struct DiffOptions {
    std::string before;
    std::string after;
    bool order = false;
    bool json = false;
};

void DefineDiff(CLI::App& app, DiffOptions& options) {
    AddDocumentArgument(app, options.before, "A");
    AddDocumentArgument(app, options.after, "B");
    app.add_flag("--order", options.order,
                 "report also items whose place among their siblings changed (the fewest moves that give "
                 "the new order)");
    AddJsonFlag(app, options.json);
}

// Thrown when a document cannot be read: the comparison is then impossible, which is not a
// difference (exit 2, as diff(1) gives).
struct CannotCompare {};

Korvel::IEcu& ReadForDiff(Document& document) {
    if (!document.Load()) {
        PrintError("cannot read " + document.Name() + ": " + document.Reason());
        throw CannotCompare();
    }
    if (document.HasErrors()) {
        // The model compared is what the reader kept; say that it left something out.
        PrintError(document.ErrorSummary() + "; compared as read (see 'zekl check')");
    }
    return document.Ecu();
}

int Diff(const DiffOptions& options) {
    if (options.before == "-" && options.after == "-") {
        throw UsageError("standard input can give only one of A and B");
    }
    try {
        Document before(options.before, Korvel::ReportLevelError);
        Document after(options.after, Korvel::ReportLevelError);
        const Korvel::IEcu& old = ReadForDiff(before);
        const Korvel::IEcu& now = ReadForDiff(after);
        Korvel::DiffOptions diffOptions;
        diffOptions.order = options.order;
        std::vector<Korvel::DiffEntry> entries;
        if (!Korvel::DiffEcus(old, now, diffOptions, entries)) {
            PrintError("cannot compare " + before.Name() + " and " + after.Name() + ": out of memory");
            return ExitUsage;
        }
        PrintResult(options.json, DifferencesJson(options.before, options.after, entries),
                    DifferencesText(entries));
        return entries.empty() ? ExitSuccess : ExitDocumentProblem;
    } catch (const CannotCompare&) {
        return ExitUsage;
    }
}

}  // namespace

void AddDiffCommand(Cli& cli) {
    cli.Add(kDiffHelp, DefineDiff, Diff);
}

}  // namespace zekl
