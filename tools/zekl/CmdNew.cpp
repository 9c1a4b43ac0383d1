#include <ZeKL/ZeKL.h>

#include <cstdio>

#include "Commands.h"
#include "Console.h"
#include "platform/File.h"

namespace zekl {

namespace {

const CommandHelp kNewHelp = {
    "new", "print or write an empty description document",
    "zekl new --protocol UDS|KWP [--nrc-table] [-o FILE]",
    "Prints the smallest valid description document for a new ECU, or writes it to FILE.\n"
    "The text is exactly what the library's CreateXmlForEmptyEcu gives: a Windows-1252\n"
    "declaration and CR LF line ends, without a line end after the last line.\n",
    ""};

struct NewOptions {
    std::string protocol;
    bool nrcTable = false;
    std::string output;
};

void DefineNew(CLI::App& app, NewOptions& options) {
    app.add_option("-p,--protocol", options.protocol, "diagnostic protocol of the ECU, in any letter case")
        ->required()
        ->type_name("UDS|KWP")
        ->transform(Choice({{"uds", "UDS"}, {"kwp", "KWP"}}, "unknown protocol", "use UDS or KWP"));
    app.add_flag(
        "--nrc-table", options.nrcTable,
        "include the protocol's default table of negative response codes (40 codes for UDS, 24 for KWP)");
    app.add_option("-o,--output", options.output, "write the document to FILE instead of standard output")
        ->type_name("FILE");
}

int New(const NewOptions& options) {
    const int32_t protocol =
        static_cast<int32_t>(options.protocol == "KWP" ? Korvel::ProtocolKwp : Korvel::ProtocolUds);
    const std::string document = CreateXmlForEmptyEcu(protocol, options.nrcTable ? 1 : 0);
    if (!options.output.empty()) {
        std::string reason;
        if (!Korvel::Platform::ReplaceFileContents(options.output.c_str(), document.data(), document.size(),
                                                   reason)) {
            throw Failure("cannot write " + Quoted(options.output) + ": " + reason);
        }
        return ExitSuccess;
    }
    WriteAll(stdout, document);
    // Redirected output stays byte for byte the library's text; only a terminal gets a
    // final line end so that the prompt does not follow the closing tag.
    if (IsTerminal(stdout)) {
        std::fputc('\n', stdout);
    }
    return ExitSuccess;
}

}  // namespace

void AddNewCommand(Cli& cli) {
    cli.Add(kNewHelp, DefineNew, New);
}

}  // namespace zekl
