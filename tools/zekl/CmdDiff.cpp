#include <ZeKL/ZeKL.h>

#include <cstdio>

#include "Arguments.h"
#include "Commands.h"
#include "Console.h"
#include "Document.h"
#include "Output.h"

namespace zekl {

namespace {

const char* const kDiffHelp =
    "Usage: zekl diff A B [--order] [--json]\n"
    "\n"
    "Reads the description documents A (old) and B (new) and prints what changed from A\n"
    "to B, item by item: added, removed and changed instances, messages and parameters\n"
    "(each changed attribute with its old and new value), conversions (kind, factor,\n"
    "offset, table entries), NRCs and the protocol. Items are matched by their ids, and\n"
    "values by meaning (factor 0.5 and 0.50, value 0x22 and 34, semantics words in any\n"
    "order), so a reordered or reformatted document is equal to the original.\n"
    "\n"
    "The summary lists the protocol, NRCs and conversions first, then each instance with\n"
    "its changes indented below it; '+' added, '-' removed, '~' changed, '>' moved.\n"
    "\n"
    "Options:\n"
    "  --order  report also items whose place among their siblings changed (the fewest\n"
    "           moves that give the new order)\n"
    "  --json   print one JSON object: before, after, equal and the differences (change,\n"
    "           item, path, and attribute, before, after for a change or a move)\n"
    "\n"
    "Exit status: 0 when the documents are equal, 1 when they differ, 2 for a usage error\n"
    "or when a document cannot be read (so that 1 always means a difference).\n";

constexpr int ExitCannotCompare = ExitUsage;

std::unique_ptr<Korvel::IEcu> ReadForDiff(const std::string& path) {
    Korvel::ReportCollector collector(Korvel::ReportLevelError);
    std::string reason;
    std::unique_ptr<Korvel::IEcu> ecu = ReadDocument(path, collector, reason);
    if (!ecu) {
        PrintError("cannot read " + Quoted(path) + ": " + reason);
    } else if (collector.GetErrorCount() != 0) {
        // The model compared is what the reader kept; say that it left something out.
        PrintError(Quoted(path) + " has " + std::to_string(collector.GetErrorCount()) +
                   " ERROR/FATAL message(s), compared as read (see 'zekl check'): " + FirstError(collector));
    }
    return ecu;
}

}  // namespace

int DiffDocuments(const std::string& before, const std::string& after, bool order, bool json) {
    const std::unique_ptr<Korvel::IEcu> old = ReadForDiff(before);
    const std::unique_ptr<Korvel::IEcu> now = old ? ReadForDiff(after) : nullptr;
    if (!old || !now) {
        return ExitCannotCompare;
    }
    Korvel::DiffOptions options;
    options.order = order;
    std::vector<Korvel::DiffEntry> entries;
    if (!Korvel::DiffEcus(*old, *now, options, entries)) {
        PrintError("cannot compare " + Quoted(before) + " and " + Quoted(after) + ": out of memory");
        return ExitCannotCompare;
    }
    WriteAll(stdout, json ? DifferencesJson(before, after, entries) : DifferencesText(entries));
    return entries.empty() ? ExitSuccess : ExitDocumentProblem;
}

int RunDiff(const Words& args) {
    Arguments arguments("diff", {{"order", 0, false}, {"json", 0, false}}, args);
    if (arguments.HelpRequested()) {
        std::fputs(kDiffHelp, stdout);
        return ExitSuccess;
    }
    arguments.RequirePositionals({"A", "B"});
    return DiffDocuments(arguments.Positionals()[0], arguments.Positionals()[1], arguments.Has("order"),
                         arguments.Has("json"));
}

}  // namespace zekl
