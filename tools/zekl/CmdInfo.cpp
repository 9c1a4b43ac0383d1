#include <ZeKL/ZeKL.h>

#include <cstdio>

#include "Arguments.h"
#include "Commands.h"
#include "Console.h"
#include "Document.h"

namespace zekl {

namespace {

const char* const kInfoHelp =
    "Usage: zekl info FILE\n"
    "\n"
    "Reads the description document FILE and prints its protocol, the encoding its XML\n"
    "declaration names, and the numbers of negative response codes, service instances,\n"
    "conversions and parameters (over all messages of all instances). The last line counts\n"
    "the reader's error and warning messages; 'zekl check FILE' lists them.\n";

std::string Field(const char* name, const std::string& value) {
    std::string line = name;
    line += ':';
    line.resize(13, ' ');
    return line + value + "\n";
}

}  // namespace

int RunInfo(const Words& args) {
    Arguments arguments("info", {}, args);
    if (arguments.HelpRequested()) {
        std::fputs(kInfoHelp, stdout);
        return ExitSuccess;
    }
    arguments.RequirePositionals({"FILE"});
    const std::string path = arguments.Positionals()[0];

    Korvel::ReportCollector collector(Korvel::ReportLevelWarn);
    std::string reason;
    std::unique_ptr<Korvel::IEcu> ecu = ReadDocument(path, collector, reason);
    if (!ecu) {
        PrintError("cannot read " + Quoted(path) + ": " + reason);
        return ExitDocumentProblem;
    }
    const std::string encoding = DeclaredEncoding(path);
    std::string text;
    text += Field("file", path);
    text += Field("protocol", Korvel::GetDataModelUtils().ProtocolToName(ecu->GetProtocol()));
    text += Field("encoding", encoding.empty() ? "(none declared)" : encoding);
    text += Field("NRCs", std::to_string(ecu->GetNrcContainer()->GetCount()));
    text += Field("instances", std::to_string(ecu->GetInstanceContainer()->GetCount()));
    text += Field("conversions", std::to_string(ecu->GetConversionContainer()->GetCount()));
    text += Field("parameters", std::to_string(CountParameters(*ecu)));
    text += Field("messages", std::to_string(collector.GetErrorCount()) + " errors, " +
                                  std::to_string(collector.GetWarningCount()) + " warnings");
    WriteAll(stdout, text);
    return ExitSuccess;
}

}  // namespace zekl
