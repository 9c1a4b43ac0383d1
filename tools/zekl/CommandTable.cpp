#include "Commands.h"

namespace zekl {

const std::vector<Command>& AllCommands() {
    static const std::vector<Command> commands = {
        {"version", "print the tool's and the library's version", RunVersion},
        {"new", "print or write an empty description document", RunNew},
        {"info", "protocol, declared encoding and item counts of a document", RunInfo},
        {"check", "read a document and list the reader's messages", RunCheck},
        {"show", "list the service instances, or the parameters or layout of one", RunShow},
        {"convert", "read a document and write it back, optionally re-encoded", RunConvert},
        {"decode", "recognise and decode diagnostic messages given in hex", RunDecode},
        {"encode", "print the bytes of a message from values of its parameters", RunEncode},
        {"lint", "check a document's meaning: layouts, ids, types, conversions", RunLint},
        {"diff", "what changed between two documents, matched by ids", RunDiff},
    };
    return commands;
}

std::string OverallHelp() {
    std::string text =
        "zekl - inspect, check and convert ZeKL diagnostic description documents, and decode\n"
        "and encode the messages they describe\n"
        "\n"
        "Usage: zekl <command> [options] [arguments]\n"
        "\n"
        "Commands:\n";
    for (const Command& command : AllCommands()) {
        std::string name = command.name;
        name.resize(10, ' ');
        text += "  " + name + command.summary + "\n";
    }
    text +=
        "\n"
        "Run 'zekl <command> --help' for the options of one command.\n"
        "Exit status: 0 success, 1 a document problem, 2 a usage error.\n";
    return text;
}

}  // namespace zekl
