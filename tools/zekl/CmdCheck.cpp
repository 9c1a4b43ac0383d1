#include <ZeKL/ZeKL.h>

#include <algorithm>

#include "Commands.h"
#include "Console.h"
#include "Document.h"
#include "JsonOutput.h"
#include "Output.h"

namespace zekl {

namespace {

const CommandHelp kCheckHelp = {
    "check", "read a document and list the reader's messages", "zekl check FILE [--level 1..5] [--json]",
    "Reads the description document FILE and prints every message of the read, one per\n"
    "line, in the order the reader reported them, in the form compilers use:\n"
    "\n"
    "  FILE:LINE:COLUMN: LEVEL: text\n"
    "\n"
    "LINE and COLUMN are where the element the message concerns starts (its '<'; columns\n"
    "count characters from 1); a message that concerns no place is 'FILE: LEVEL: text'.\n"
    "When the read gave no FATAL, ERROR or WARN message, the last line says the document\n"
    "is clean.\n",
    "Exit status: 0 when the read gave no ERROR or FATAL message, 1 otherwise (also when\n"
    "the file cannot be read or the document is refused), 2 for a usage error. Errors\n"
    "decide the status also when --level 1 hides them.\n"};

struct CheckOptions {
    std::string file;
    int32_t level = Korvel::ReportLevelWarn;
    bool json = false;
};

void DefineCheck(CLI::App& app, CheckOptions& options) {
    AddDocumentArgument(app, options.file);
    std::map<std::string, std::string> levels;
    for (int32_t level = Korvel::ReportLevelFatal; level <= Korvel::ReportLevelDebug; ++level) {
        const std::string number = std::to_string(level);
        std::string name = Korvel::ReportLevelName(level);
        for (char& c : name) {
            c = static_cast<char>(c - 'A' + 'a');
        }
        levels[number] = number;
        levels[name] = number;
    }
    levels["warning"] = std::to_string(Korvel::ReportLevelWarn);
    app.add_option("-l,--level", options.level,
                   "most detailed level to print: 1 FATAL, 2 ERROR, 3 WARN (the default), 4 INFO, 5 DEBUG; "
                   "the names work too, in any letter case")
        ->type_name("LEVEL")
        ->transform(Choice(levels, "invalid level", "use 1 to 5"));
    AddJsonFlag(app, options.json);
}

int Check(const CheckOptions& options) {
    // Warnings are always kept so that their count is right at every level.
    Document document(options.file, std::max<int32_t>(options.level, Korvel::ReportLevelWarn));
    document.Load();
    Json messages = Json::array();
    std::string text;
    for (const auto& message : document.Messages().GetMessages()) {
        if (message.level <= options.level) {
            messages.push_back(MessageJson(message));
            text += PlacedLine(
                options.file, message.line, message.column,
                Korvel::ReportLevelName(message.level) + std::string(": ") + OneLine(message.text));
        }
    }
    const bool clean = document.IsLoaded() && document.Messages().GetErrorCount() == 0 &&
                       document.Messages().GetWarningCount() == 0;
    if (clean) {
        text += options.file + ": clean: no FATAL, ERROR or WARN message\n";
    }
    const Json json = {{"file", document.Argument()},
                       {"clean", clean},
                       {"read", document.IsLoaded()},
                       {"reason", TextOrNull(document.Reason())},
                       {"errors", document.Messages().GetErrorCount()},
                       {"warnings", document.Messages().GetWarningCount()},
                       {"messages", messages}};
    PrintResult(options.json, json, text);
    if (!document.IsLoaded()) {
        throw Failure("cannot read " + document.Name() + ": " + document.Reason());
    }
    if (document.HasErrors()) {
        throw Failure(document.ErrorSummary());
    }
    return ExitSuccess;
}

}  // namespace

void AddCheckCommand(Cli& cli) {
    cli.Add(kCheckHelp, DefineCheck, Check);
}

}  // namespace zekl
