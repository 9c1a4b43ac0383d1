#include <ZeKL/ZeKL.h>

#include <cstdio>

#include "Arguments.h"
#include "Commands.h"
#include "Console.h"
#include "Document.h"

namespace zekl {

namespace {

const char* const kShowHelp =
    "Usage: zekl show FILE [--instance ID]\n"
    "\n"
    "Without --instance: one line per service instance with the number of parameters of\n"
    "its request, positive response and negative response ('-' when it has none) and the\n"
    "request's service id byte(s).\n"
    "\n"
    "With --instance ID: each message of that instance as a table of its parameters:\n"
    "  PARAMETER   parameter id\n"
    "  BYTE        byte position (bit position / 8)\n"
    "  BIT, LEN    bit position and bit length\n"
    "  TYPE, UNIT  data type name and unit\n"
    "  SEMANTICS   semantics words (SID, XID, CONST, MOTOROLA, GAP)\n"
    "  CONVERSION  kind and id of the conversion ('formula', 'table', or 'missing' when\n"
    "              the ECU has no conversion of that id)\n"
    "  VALUE       constant value text\n"
    "  IMAGE       the value's bytes in transmission order, in hex (Intel order reversed,\n"
    "              MOTOROLA kept big-endian); '-' when the value has no byte image\n";

std::string OrDash(const std::string& text) {
    return text.empty() ? "-" : text;
}

std::string CountCell(const Korvel::IMessage* message) {
    return message != nullptr ? std::to_string(message->GetCount()) : "-";
}

std::string ConversionCell(const Korvel::IParam& param) {
    const std::string id = param.GetConvId();
    if (id.empty()) {
        return "-";
    }
    switch (param.GetConversionKind()) {
        case static_cast<uint32_t>(Korvel::ConversionKind::Formula):
            return "formula " + id;
        case static_cast<uint32_t>(Korvel::ConversionKind::ValueTable):
            return "table " + id;
        case static_cast<uint32_t>(Korvel::ConversionKind::NotSet):
            return "missing " + id;
        default:
            return "other " + id;
    }
}

std::string SidCell(Korvel::IInstance& instance) {
    Korvel::IRequest* request = instance.GetRequest();
    if (request == nullptr) {
        return "-";
    }
    const Korvel::IParam* sid = request->GetSidParam();
    return sid != nullptr ? OrDash(HexBytes(sid->GetValueImage())) : "-";
}

std::string InstanceList(Korvel::IEcu& ecu) {
    TextTable table({"INSTANCE", "SID", "REQUEST", "RESPONSE", "NEGATIVE_RESPONSE"});
    Korvel::IInstanceContainer* instances = ecu.GetInstanceContainer();
    for (uint32_t i = 0; i < instances->GetCount(); ++i) {
        Korvel::IInstance* instance = instances->GetInstance(i);
        if (instance == nullptr) {
            continue;
        }
        table.AddRow({instance->GetId(), SidCell(*instance), CountCell(instance->GetRequest()),
                      CountCell(instance->GetPosResponse()), CountCell(instance->GetNegResponse())});
    }
    return table.Render();
}

std::string MessageTable(const char* name, const Korvel::IMessage& message) {
    std::string text = std::string(name) + " (" + std::to_string(message.GetCount()) + " parameters)\n";
    TextTable table(
        {"PARAMETER", "BYTE", "BIT", "LEN", "TYPE", "UNIT", "SEMANTICS", "CONVERSION", "VALUE", "IMAGE"});
    for (uint32_t i = 0; i < message.GetCount(); ++i) {
        const Korvel::IParam* param = message.GetParam(static_cast<int>(i));
        if (param == nullptr) {
            continue;
        }
        uint32_t byteIndex = 0;
        uint32_t bitOffset = 0;
        uint32_t bitLength = 0;
        param->GetBytePosition(byteIndex, bitOffset, bitLength);
        table.AddRow({OrDash(param->GetId()), std::to_string(byteIndex), std::to_string(param->GetBitPos()),
                      std::to_string(bitLength), OrDash(param->GetDataTypeName()), OrDash(param->GetUnit()),
                      OrDash(param->GetSemantics()), ConversionCell(*param), OrDash(param->GetValue()),
                      OrDash(HexBytes(param->GetValueImage()))});
    }
    return text + table.Render();
}

std::string InstanceDetail(const Korvel::IInstance& instance) {
    std::string text = std::string("INSTANCE ") + instance.GetId() + "\n";
    if (instance.GetRequest() != nullptr) {
        text += "\n" + MessageTable("REQUEST", *instance.GetRequest());
    }
    if (instance.GetPosResponse() != nullptr) {
        text += "\n" + MessageTable("RESPONSE", *instance.GetPosResponse());
    }
    if (instance.GetNegResponse() != nullptr) {
        text += "\n" + MessageTable("NEGATIVE_RESPONSE", *instance.GetNegResponse());
    }
    return text;
}

}  // namespace

int RunShow(const Words& args) {
    Arguments arguments("show", {{"instance", 'i', true}}, args);
    if (arguments.HelpRequested()) {
        std::fputs(kShowHelp, stdout);
        return ExitSuccess;
    }
    arguments.RequirePositionals({"FILE"});
    const std::string path = arguments.Positionals()[0];

    Korvel::ReportCollector collector(Korvel::ReportLevelError);
    std::string reason;
    std::unique_ptr<Korvel::IEcu> ecu = ReadDocument(path, collector, reason);
    if (!ecu) {
        PrintError("cannot read " + Quoted(path) + ": " + reason);
        return ExitDocumentProblem;
    }
    if (!arguments.Has("instance")) {
        WriteAll(stdout, InstanceList(*ecu));
        return ExitSuccess;
    }
    const std::string id = arguments.Value("instance");
    const Korvel::IInstance* instance = ecu->GetInstanceContainer()->GetInstance(id.c_str());
    if (instance == nullptr) {
        PrintError("no instance " + Quoted(id) + " in " + Quoted(path) + " (see 'zekl show " + path + "')");
        return ExitDocumentProblem;
    }
    WriteAll(stdout, InstanceDetail(*instance));
    return ExitSuccess;
}

}  // namespace zekl
