#include <ZeKL/ZeKL.h>

#include <algorithm>
#include <cstdio>

#include "Arguments.h"
#include "Commands.h"
#include "Console.h"
#include "Document.h"

namespace zekl {

namespace {

const char* const kShowHelp =
    "Usage: zekl show FILE [--instance ID [--layout]]\n"
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
    "              MOTOROLA kept big-endian); '-' when the value has no byte image\n"
    "\n"
    "With --instance ID --layout: each message as a grid of its bytes (rows) and bits\n"
    "(columns, 7 the most significant), every bit marked with the letter of the parameter\n"
    "that covers it, so that gaps (blank) and overlaps (*) show at a glance. A parameter of\n"
    "L bits at bit position P covers the bits that the codec reads: ceil((P % 8 + L) / 8)\n"
    "bytes from byte P / 8, as one number in the parameter's byte order (MOTOROLA: first byte\n"
    "most significant), from bit P % 8 up. The letters are explained below each grid.\n";

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

std::string FieldLabel(std::size_t index) {
    if (index < 26) {
        return std::string(1, static_cast<char>('A' + index));
    }
    if (index < 52) {
        return std::string(1, static_cast<char>('a' + index - 26));
    }
    const std::size_t rest = index - 52;
    return std::string(1, static_cast<char>('A' + rest / 26 % 26)) + static_cast<char>('A' + rest % 26);
}

std::string Cell(int32_t owner) {
    if (owner == Korvel::LayoutBitFree) {
        return "   ";
    }
    if (owner == Korvel::LayoutBitOverlap) {
        return " * ";
    }
    const std::string label = FieldLabel(static_cast<std::size_t>(owner));
    return label.size() == 1 ? " " + label + " " : label + " ";
}

std::string FieldDescription(const Korvel::LayoutField& field) {
    std::string text = "bit " + std::to_string(field.bitPos) + ", " + std::to_string(field.bitLength) +
                       " bits, " + Korvel::GetDataModelUtils().DataTypeToName(field.type);
    if (field.motorola) {
        text += ", MOTOROLA";
    }
    if (field.isConst) {
        text += ", CONST";
    }
    if (field.isGap) {
        text += ", GAP";
    }
    if (field.problem != Korvel::CodecProblem::None) {
        text += std::string(": ") + Korvel::CodecProblemText(field.problem);
    }
    return text;
}

std::string LayoutGrid(const char* name, const Korvel::MessageLayout& layout) {
    std::string text = std::string(name) + " (" + std::to_string(layout.length) + " bytes)\n";
    const std::size_t width = std::max<std::size_t>(4, std::to_string(layout.length).size() + 1);
    const std::string margin(width + 1, ' ');
    const std::string rule = margin + "+---+---+---+---+---+---+---+---+\n";
    text += margin + "  7   6   5   4   3   2   1   0\n";
    text += rule;
    bool overlap = false;
    for (uint32_t byte = 0; byte < layout.length; ++byte) {
        std::string row = std::to_string(byte);
        row = std::string(width - row.size(), ' ') + row + " |";
        std::vector<int32_t> named;
        for (int bit = 7; bit >= 0; --bit) {
            const int32_t owner = layout.bitOwners[byte * 8 + static_cast<uint32_t>(bit)];
            row += Cell(owner) + "|";
            overlap = overlap || owner == Korvel::LayoutBitOverlap;
            if (owner >= 0 && std::find(named.begin(), named.end(), owner) == named.end()) {
                named.push_back(owner);
            }
        }
        for (std::size_t i = 0; i < named.size(); ++i) {
            row += (i == 0 ? "  " : ", ") + FieldLabel(static_cast<std::size_t>(named[i])) + " " +
                   layout.fields[static_cast<std::size_t>(named[i])].id;
        }
        text += row + "\n" + rule;
    }
    TextTable legend({"KEY", "PARAMETER", "PLACE"});
    for (std::size_t i = 0; i < layout.fields.size(); ++i) {
        legend.AddRow({FieldLabel(i), layout.fields[i].id, FieldDescription(layout.fields[i])});
    }
    if (overlap) {
        legend.AddRow({"*", "(overlap)", "bits that more than one parameter covers"});
    }
    if (!layout.fields.empty()) {
        text += legend.Render();
    } else {
        text += "(no parameters)\n";
    }
    return text;
}

std::string InstanceLayout(const Korvel::ICodec& codec, uint32_t instance) {
    const char* const names[] = {"REQUEST", "RESPONSE", "NEGATIVE_RESPONSE"};
    std::string text = std::string("INSTANCE ") + codec.GetInstanceId(instance) + "\n";
    for (uint32_t kind = Korvel::MessageKindRequest; kind <= Korvel::MessageKindNegResponse; ++kind) {
        Korvel::MessageLayout layout;
        if (codec.GetLayout(instance, kind, layout)) {
            text += "\n" + LayoutGrid(names[kind - 1], layout);
        }
    }
    return text;
}

}  // namespace

int RunShow(const Words& args) {
    Arguments arguments("show", {{"instance", 'i', true}, {"layout", 0, false}}, args);
    if (arguments.HelpRequested()) {
        std::fputs(kShowHelp, stdout);
        return ExitSuccess;
    }
    arguments.RequirePositionals({"FILE"});
    if (arguments.Has("layout") && !arguments.Has("instance")) {
        throw UsageError("show", "--layout needs --instance");
    }
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
    if (arguments.Has("layout")) {
        const std::unique_ptr<Korvel::ICodec> codec = Korvel::CreateCodec(*ecu);
        if (!codec) {
            PrintError("cannot lay out " + Quoted(id) + ": out of memory");
            return ExitDocumentProblem;
        }
        WriteAll(stdout, InstanceLayout(*codec, codec->FindInstance(id.c_str())));
        return ExitSuccess;
    }
    WriteAll(stdout, InstanceDetail(*instance));
    return ExitSuccess;
}

}  // namespace zekl
