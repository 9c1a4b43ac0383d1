#include <ZeKL/ZeKL.h>

#include <cstdio>

#include "Arguments.h"
#include "Commands.h"
#include "Console.h"
#include "Document.h"

namespace zekl {

namespace {

const char* const kCheckHelp =
    "Usage: zekl check FILE [--level 1..5]\n"
    "\n"
    "Reads the description document FILE and prints every message of the read, one per\n"
    "line, in the order the reader reported them, in the form compilers use:\n"
    "\n"
    "  FILE:LINE:COLUMN: LEVEL: text\n"
    "\n"
    "LINE and COLUMN are where the element the message concerns starts (its '<'; columns\n"
    "count characters from 1); a message that concerns no place is 'FILE: LEVEL: text'.\n"
    "When the read gave no FATAL, ERROR or WARN message, the last line says the document\n"
    "is clean.\n"
    "\n"
    "Options:\n"
    "  --level N  most detailed level to print: 1 FATAL, 2 ERROR, 3 WARN (default),\n"
    "             4 INFO, 5 DEBUG; the level names are accepted too\n"
    "\n"
    "Exit status: 0 when the read gave no ERROR or FATAL message, 1 otherwise (also when\n"
    "the file cannot be read or the document is refused), 2 for a usage error. Errors\n"
    "decide the status also when --level 1 hides them.\n";

int32_t ParseLevel(const std::string& text) {
    for (int32_t level = Korvel::ReportLevelFatal; level <= Korvel::ReportLevelDebug; ++level) {
        if (text == std::to_string(level) || text == Korvel::ReportLevelName(level)) {
            return level;
        }
    }
    throw UsageError("check", "invalid level '" + text + "' (use 1 to 5)");
}

bool IsClean(const Korvel::ReportCollector& collector) {
    for (const auto& message : collector.GetMessages()) {
        if (message.level <= Korvel::ReportLevelWarn) {
            return false;
        }
    }
    return true;
}

}  // namespace

std::string PlacedLine(const std::string& path, uint32_t line, uint32_t column, const std::string& rest) {
    std::string text = path;
    if (line != 0) {
        text += ':' + std::to_string(line) + ':' + std::to_string(column);
    }
    return text + ": " + rest + "\n";
}

int CheckDocument(const std::string& path, int32_t level) {
    // Errors and warnings are always collected: errors decide the exit status at every level,
    // and both whether the document is clean.
    Korvel::ReportCollector collector(level < Korvel::ReportLevelWarn ? Korvel::ReportLevelWarn : level);
    std::string reason;
    std::unique_ptr<Korvel::IEcu> ecu = ReadDocument(path, collector, reason);
    std::string text;
    for (const auto& message : collector.GetMessages()) {
        if (message.level <= level) {
            text += PlacedLine(
                path, message.line, message.column,
                std::string(Korvel::ReportLevelName(message.level)) + ": " + OneLine(message.text));
        }
    }
    if (ecu && IsClean(collector)) {
        text += path + ": clean: no FATAL, ERROR or WARN message\n";
    }
    WriteAll(stdout, text);
    if (!ecu) {
        PrintError("cannot read " + Quoted(path) + ": " + reason);
        return ExitDocumentProblem;
    }
    if (collector.GetErrorCount() != 0) {
        PrintError(Quoted(path) + " has " + std::to_string(collector.GetErrorCount()) +
                   " ERROR/FATAL message(s): " + FirstError(collector));
        return ExitDocumentProblem;
    }
    return ExitSuccess;
}

int RunCheck(const Words& args) {
    Arguments arguments("check", {{"level", 'l', true}}, args);
    if (arguments.HelpRequested()) {
        std::fputs(kCheckHelp, stdout);
        return ExitSuccess;
    }
    const int32_t level = ParseLevel(arguments.Value("level", "3"));
    arguments.RequirePositionals({"FILE"});
    return CheckDocument(arguments.Positionals()[0], level);
}

}  // namespace zekl
