#include <ZeKL/ZeKL.h>

#include <cstdio>

#include "Arguments.h"
#include "Commands.h"
#include "Console.h"
#include "Document.h"

namespace zekl {

namespace {

const char* const kConvertHelp =
    "Usage: zekl convert IN OUT [--encoding utf-8|Windows-1252|iso-8859-1]\n"
    "\n"
    "Reads the description document IN and writes it to OUT in the library's own layout.\n"
    "A document already in that layout comes back byte for byte. OUT is replaced only\n"
    "when the whole document has been written; IN and OUT may be the same file.\n"
    "\n"
    "Options:\n"
    "  --encoding NAME  encoding of OUT: utf-8, Windows-1252 or iso-8859-1 (any letter\n"
    "                   case). Default: the encoding IN declares, or utf-8 when it declares\n"
    "                   none or one the writer does not produce.\n"
    "\n"
    "Elements the reader refused (see 'zekl check IN') are not written; a warning says so.\n";

}  // namespace

int RunConvert(const Words& args) {
    Arguments arguments("convert", {{"encoding", 'e', true}}, args);
    if (arguments.HelpRequested()) {
        std::fputs(kConvertHelp, stdout);
        return ExitSuccess;
    }
    std::string encoding;
    if (arguments.Has("encoding")) {
        encoding = WriterEncodingName(arguments.Value("encoding"));
        if (encoding.empty()) {
            throw UsageError("convert", "unknown encoding '" + arguments.Value("encoding") +
                                            "' (use utf-8, Windows-1252 or iso-8859-1)");
        }
    }
    arguments.RequirePositionals({"IN", "OUT"});
    const std::string input = arguments.Positionals()[0];
    const std::string output = arguments.Positionals()[1];

    Korvel::ReportCollector collector(Korvel::ReportLevelError);
    std::string reason;
    std::unique_ptr<Korvel::IEcu> ecu = ReadDocument(input, collector, reason);
    if (!ecu) {
        PrintError("cannot read " + Quoted(input) + ": " + reason);
        return ExitDocumentProblem;
    }
    if (encoding.empty()) {
        encoding = WriterEncodingName(DeclaredEncoding(input));
        if (encoding.empty()) {
            encoding = "utf-8";
        }
    }
    if (collector.GetErrorCount() != 0) {
        PrintError("warning: " + Quoted(input) + " has " + std::to_string(collector.GetErrorCount()) +
                   " read error(s); the elements concerned are not written (see 'zekl check')");
    }
    std::string error;
    const uint32_t written = Korvel::GetKLWriter().WriteToFile(*ecu, output.c_str(), encoding.c_str(), error);
    if (written == 0) {
        PrintError("cannot write " + Quoted(output) + ": " + error);
        return ExitDocumentProblem;
    }
    std::printf("wrote %s: %u bytes, %s\n", Quoted(output).c_str(), static_cast<unsigned>(written),
                encoding.c_str());
    return ExitSuccess;
}

}  // namespace zekl
