#include <ZeKL/ZeKL.h>

#include "Commands.h"
#include "Console.h"
#include "Document.h"
#include "JsonOutput.h"

namespace zekl {

namespace {

const CommandHelp kInfoHelp = {
    "info", "protocol, declared encoding and item counts of a document", "zekl info FILE [--json]",
    "Reads the description document FILE and prints its protocol, the encoding its XML\n"
    "declaration names, and the numbers of negative response codes, service instances,\n"
    "conversions and parameters (over all messages of all instances). The last line counts\n"
    "the reader's error and warning messages; 'zekl check FILE' lists them.\n",
    "Exit status: 0 success; 1 when the document cannot be read, or when the read had ERROR\n"
    "or FATAL messages (the counts then leave out what was dropped; a warning line says so);\n"
    "2 for a usage error.\n"};

struct InfoOptions {
    std::string file;
    bool json = false;
};

void DefineInfo(CLI::App& app, InfoOptions& options) {
    AddDocumentArgument(app, options.file);
    AddJsonFlag(app, options.json);
}

Json InfoJson(Document& document) {
    const Korvel::IEcu& ecu = document.Require();
    return {{"file", document.Argument()},
            {"protocol", Korvel::GetDataModelUtils().ProtocolToName(ecu.GetProtocol())},
            {"encoding", TextOrNull(document.DeclaredEncoding())},
            {"nrcs", ecu.GetNrcContainer()->GetCount()},
            {"instances", ecu.GetInstanceContainer()->GetCount()},
            {"conversions", ecu.GetConversionContainer()->GetCount()},
            {"parameters", CountParameters(ecu)},
            {"errors", document.Messages().GetErrorCount()},
            {"warnings", document.Messages().GetWarningCount()}};
}

std::string Field(const char* name, const std::string& value) {
    std::string line = name;
    line += ':';
    line.resize(13, ' ');
    return line + value + "\n";
}

std::string InfoText(const Json& info) {
    const auto number = [&info](const char* key) { return std::to_string(info[key].get<uint32_t>()); };
    return Field("file", info["file"].get<std::string>()) +
           Field("protocol", info["protocol"].get<std::string>()) +
           Field("encoding",
                 info["encoding"].is_null() ? "(none declared)" : info["encoding"].get<std::string>()) +
           Field("NRCs", number("nrcs")) + Field("instances", number("instances")) +
           Field("conversions", number("conversions")) + Field("parameters", number("parameters")) +
           Field("messages", number("errors") + " errors, " + number("warnings") + " warnings");
}

int Info(const InfoOptions& options) {
    Document document(options.file, Korvel::ReportLevelWarn);
    const Json info = InfoJson(document);
    PrintResult(options.json, info, InfoText(info));
    return document.ShownStatus();
}

}  // namespace

void AddInfoCommand(Cli& cli) {
    cli.Add(kInfoHelp, DefineInfo, Info);
}

}  // namespace zekl
