#include <ZeKL/ZeKL.h>

#include <cstdio>

#include "Arguments.h"
#include "Commands.h"
#include "Console.h"
#include "platform/File.h"

namespace zekl {

namespace {

const char* const kNewHelp =
    "Usage: zekl new --protocol UDS|KWP [--nrc-table] [-o FILE]\n"
    "\n"
    "Prints the smallest valid description document for a new ECU, or writes it to FILE.\n"
    "The text is exactly what the library's CreateXmlForEmptyEcu gives: a Windows-1252\n"
    "declaration and CR LF line ends, without a line end after the last line.\n"
    "\n"
    "Options:\n"
    "  --protocol UDS|KWP  diagnostic protocol of the ECU (required; any letter case)\n"
    "  --nrc-table         include the protocol's default table of negative response codes\n"
    "                      (40 codes for UDS, 24 for KWP)\n"
    "  -o, --output FILE   write the document to FILE instead of standard output\n";

int32_t ParseProtocol(const std::string& name) {
    std::string upper = name;
    for (char& c : upper) {
        if (c >= 'a' && c <= 'z') {
            c = static_cast<char>(c - 'a' + 'A');
        }
    }
    if (upper == "UDS") {
        return static_cast<int32_t>(Korvel::ProtocolUds);
    }
    if (upper == "KWP") {
        return static_cast<int32_t>(Korvel::ProtocolKwp);
    }
    throw UsageError("new", "unknown protocol '" + name + "' (use UDS or KWP)");
}

}  // namespace

int RunNew(const Words& args) {
    Arguments arguments("new", {{"protocol", 'p', true}, {"nrc-table", 0, false}, {"output", 'o', true}},
                        args);
    if (arguments.HelpRequested()) {
        std::fputs(kNewHelp, stdout);
        return ExitSuccess;
    }
    arguments.RequirePositionals({});
    if (!arguments.Has("protocol")) {
        throw UsageError("new", "missing option --protocol UDS|KWP");
    }
    const int32_t protocol = ParseProtocol(arguments.Value("protocol"));
    const std::string document = CreateXmlForEmptyEcu(protocol, arguments.Has("nrc-table") ? 1 : 0);

    if (arguments.Has("output")) {
        const std::string path = arguments.Value("output");
        std::string reason;
        if (!Korvel::Platform::ReplaceFileContents(path.c_str(), document.data(), document.size(), reason)) {
            PrintError("cannot write " + Quoted(path) + ": " + reason);
            return ExitDocumentProblem;
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

}  // namespace zekl
