#include <ZeKL/ZeKL.h>

#include <algorithm>

#include "CodecOutput.h"
#include "Commands.h"
#include "Console.h"
#include "Document.h"
#include "JsonOutput.h"

namespace zekl {

namespace {

const CommandHelp kShowHelp = {
    "show", "list the service instances, or the parameters or layout of one",
    "zekl show FILE [--instance ID [--layout]] [--json]",
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
    "most significant), from bit P % 8 up. The letters are explained below each grid.\n",
    "Exit status: 0 success; 1 when the document cannot be read, has no such instance, or\n"
    "its read had ERROR or FATAL messages (what is shown then lacks what was dropped; a\n"
    "warning line says so); 2 for a usage error.\n"};

const char* const kMessageNames[] = {"REQUEST", "RESPONSE", "NEGATIVE_RESPONSE"};

struct ShowOptions {
    std::string file;
    std::string instance;
    bool layout = false;
    bool json = false;
};

void DefineShow(CLI::App& app, ShowOptions& options) {
    AddDocumentArgument(app, options.file);
    CLI::Option* instance =
        app.add_option("-i,--instance", options.instance, "show the messages of the service instance ID")
            ->type_name("ID");
    app.add_flag("--layout", options.layout, "with --instance: each message as a grid of bytes and bits")
        ->needs(instance);
    AddJsonFlag(app, options.json);
}

std::string OrDash(const std::string& text) {
    return text.empty() ? "-" : text;
}

std::string DashForNull(const Json& value) {
    return value.is_null() ? "-" : value.is_string() ? OrDash(value.get<std::string>()) : value.dump();
}

Json CountOrNull(const Korvel::IMessage* message) {
    return message != nullptr ? Json(message->GetCount()) : Json(nullptr);
}

Json SidOrNull(Korvel::IInstance& instance) {
    Korvel::IRequest* request = instance.GetRequest();
    const Korvel::IParam* sid = request != nullptr ? request->GetSidParam() : nullptr;
    return sid != nullptr ? TextOrNull(HexBytes(sid->GetValueImage())) : Json(nullptr);
}

const char* ConversionKindName(uint32_t kind) {
    switch (kind) {
        case static_cast<uint32_t>(Korvel::ConversionKind::Formula):
            return "formula";
        case static_cast<uint32_t>(Korvel::ConversionKind::ValueTable):
            return "table";
        case static_cast<uint32_t>(Korvel::ConversionKind::NotSet):
            return "missing";
        default:
            return "other";
    }
}

Json ParamJson(const Korvel::IParam& param) {
    uint32_t byteIndex = 0;
    uint32_t bitOffset = 0;
    uint32_t bitLength = 0;
    param.GetBytePosition(byteIndex, bitOffset, bitLength);
    const std::string convId = param.GetConvId();
    return {{"id", param.GetId()},
            {"byte", byteIndex},
            {"bitPos", param.GetBitPos()},
            {"bitLength", bitLength},
            {"type", param.GetDataTypeName()},
            {"unit", param.GetUnit()},
            {"semantics", param.GetSemantics()},
            {"conversion", convId.empty() ? Json(nullptr)
                                          : Json({{"kind", ConversionKindName(param.GetConversionKind())},
                                                  {"id", convId}})},
            {"value", param.GetValue()},
            {"image", TextOrNull(HexBytes(param.GetValueImage()))}};
}

Json ParamsJson(const Korvel::IMessage* message) {
    if (message == nullptr) {
        return nullptr;
    }
    Json params = Json::array();
    for (uint32_t i = 0; i < message->GetCount(); ++i) {
        if (const Korvel::IParam* param = message->GetParam(static_cast<int>(i))) {
            params.push_back(ParamJson(*param));
        }
    }
    return params;
}

Json InstanceListJson(Korvel::IEcu& ecu) {
    Json instances = Json::array();
    Korvel::IInstanceContainer* container = ecu.GetInstanceContainer();
    for (uint32_t i = 0; i < container->GetCount(); ++i) {
        if (Korvel::IInstance* instance = container->GetInstance(i)) {
            instances.push_back({{"id", instance->GetId()},
                                 {"sid", SidOrNull(*instance)},
                                 {"request", CountOrNull(instance->GetRequest())},
                                 {"response", CountOrNull(instance->GetPosResponse())},
                                 {"negative", CountOrNull(instance->GetNegResponse())}});
        }
    }
    return instances;
}

std::string InstanceListText(const Json& instances) {
    TextTable table({"INSTANCE", "SID", "REQUEST", "RESPONSE", "NEGATIVE_RESPONSE"});
    for (const Json& instance : instances) {
        table.AddRow({instance["id"].get<std::string>(), DashForNull(instance["sid"]),
                      DashForNull(instance["request"]), DashForNull(instance["response"]),
                      DashForNull(instance["negative"])});
    }
    return table.Render();
}

std::string ConversionCell(const Json& conversion) {
    return conversion.is_null()
               ? "-"
               : conversion["kind"].get<std::string>() + " " + conversion["id"].get<std::string>();
}

std::string MessageTable(const char* name, const Json& params) {
    std::string text = std::string(name) + " (" + std::to_string(params.size()) + " parameters)\n";
    TextTable table(
        {"PARAMETER", "BYTE", "BIT", "LEN", "TYPE", "UNIT", "SEMANTICS", "CONVERSION", "VALUE", "IMAGE"});
    for (const Json& param : params) {
        table.AddRow({DashForNull(param["id"]), DashForNull(param["byte"]), DashForNull(param["bitPos"]),
                      DashForNull(param["bitLength"]), DashForNull(param["type"]), DashForNull(param["unit"]),
                      DashForNull(param["semantics"]), ConversionCell(param["conversion"]),
                      DashForNull(param["value"]), DashForNull(param["image"])});
    }
    return text + table.Render();
}

// Each message of the instance, as JSON (under its kind key) and as tables.
void InstanceDetail(const Korvel::IInstance& instance, Json& json, std::string& text) {
    const Korvel::IMessage* const messages[] = {instance.GetRequest(), instance.GetPosResponse(),
                                                instance.GetNegResponse()};
    text = std::string("INSTANCE ") + instance.GetId() + "\n";
    for (uint32_t kind = Korvel::MessageKindRequest; kind <= Korvel::MessageKindNegResponse; ++kind) {
        const Json params = ParamsJson(messages[kind - 1]);
        json[KindKey(kind)] = params;
        if (!params.is_null()) {
            text += "\n" + MessageTable(kMessageNames[kind - 1], params);
        }
    }
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

Json LayoutJson(const Korvel::MessageLayout& layout) {
    Json fields = Json::array();
    for (std::size_t i = 0; i < layout.fields.size(); ++i) {
        const Korvel::LayoutField& field = layout.fields[i];
        fields.push_back({{"key", FieldLabel(i)},
                          {"id", field.id},
                          {"bitPos", field.bitPos},
                          {"bitLength", field.bitLength},
                          {"type", Korvel::GetDataModelUtils().DataTypeToName(field.type)},
                          {"motorola", field.motorola},
                          {"const", field.isConst},
                          {"gap", field.isGap},
                          {"problem", field.problem != Korvel::CodecProblem::None
                                          ? Json(Korvel::CodecProblemText(field.problem))
                                          : Json(nullptr)}});
    }
    Json bytes = Json::array();
    for (uint32_t byte = 0; byte < layout.length; ++byte) {
        Json bits = Json::array();
        for (int bit = 7; bit >= 0; --bit) {
            bits.push_back(layout.bitOwners[byte * 8 + static_cast<uint32_t>(bit)]);
        }
        bytes.push_back(std::move(bits));
    }
    return {{"length", layout.length}, {"fields", std::move(fields)}, {"bytes", std::move(bytes)}};
}

// The layout of each message of the instance, as JSON (under its kind key) and as grids.
void InstanceLayout(const Korvel::ICodec& codec, uint32_t instance, Json& json, std::string& text) {
    text = std::string("INSTANCE ") + codec.GetInstanceId(instance) + "\n";
    for (uint32_t kind = Korvel::MessageKindRequest; kind <= Korvel::MessageKindNegResponse; ++kind) {
        Korvel::MessageLayout layout;
        const bool present = codec.GetLayout(instance, kind, layout);
        json[KindKey(kind)] = present ? LayoutJson(layout) : Json(nullptr);
        if (present) {
            text += "\n" + LayoutGrid(kMessageNames[kind - 1], layout);
        }
    }
}

int Show(const ShowOptions& options) {
    Document document(options.file, Korvel::ReportLevelError);
    Korvel::IEcu& ecu = document.Require();
    Json json = {{"file", document.Argument()}};
    std::string text;
    if (options.instance.empty()) {
        json["instances"] = InstanceListJson(ecu);
        text = InstanceListText(json["instances"]);
    } else {
        const Korvel::IInstance* instance = ecu.GetInstanceContainer()->GetInstance(options.instance.c_str());
        if (instance == nullptr) {
            throw document.NoInstance(options.instance);
        }
        json["id"] = options.instance;
        if (options.layout) {
            const std::unique_ptr<Korvel::ICodec> codec = CompileCodec(document, "lay out");
            InstanceLayout(*codec, codec->FindInstance(options.instance.c_str()), json, text);
        } else {
            InstanceDetail(*instance, json, text);
        }
    }
    PrintResult(options.json, json, text);
    return document.ShownStatus();
}

}  // namespace

void AddShowCommand(Cli& cli) {
    cli.Add(kShowHelp, DefineShow, Show);
}

}  // namespace zekl
