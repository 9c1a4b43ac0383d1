#include <ZeKL/ZeKL.h>

#include <algorithm>
#include <cstdio>
#include <iostream>
#include <string>
#include <vector>

#include "CodecOutput.h"
#include "Commands.h"
#include "Console.h"
#include "Document.h"

namespace zekl {

namespace {

const CommandHelp kDecodeHelp = {
    "decode", "recognise and decode diagnostic messages given in hex",
    "zekl decode FILE HEX... [--json]\n"
    "zekl decode FILE --instance ID [--response|--negative] HEX... [--json]",
    "Decodes diagnostic messages with the description FILE. Each HEX argument is one\n"
    "message, its bytes in hex with or without blanks (quote it when it has blanks:\n"
    "\"62 01 00 0B B8\"); a HEX of '-' reads one message per line from standard input (a\n"
    "trace; empty lines and lines starting with '#' are skipped).\n"
    "\n"
    "Without --instance each message is recognised first: a request or positive response by\n"
    "its CONST parameters (the most constant bits win), a negative response (7F, request\n"
    "SID, NRC) by its shape and the request's SID, with the NRC's text from the ECU's table.\n"
    "Then the instance, the kind and a table of the parameters are printed:\n"
    "  PARAMETER  parameter id\n"
    "  BYTE.BIT   bit position as byte and bit offset (bit 0 the least significant)\n"
    "  LEN        bit length\n"
    "  RAW        the coded value: hex for unsigned and none, decimal for signed and bcd,\n"
    "             the number for fp and double, the text in quotes for ascii, utf8, ucs2\n"
    "  PHYSICAL   the value with its unit after a formula, or the value table's text\n"
    "  PROBLEM    what is wrong with the parameter (only when something is)\n"
    "followed by the problems of the message (data shorter than the message, trailing\n"
    "bytes) and the parameters' problems (beyond the data, constant mismatch, no table\n"
    "entry, bad BCD digit, ...). An unknown conversion is a warning: the raw value stands.\n",
    "Exit status: 0 when every message was recognised and decoded without an error,\n"
    "1 when one was not (or the document cannot be read), 2 for a usage error.\n"};

struct Input {
    std::string label;  // the bytes in hex, or the line that is not hex
    Korvel::ByteBuffer bytes;
    std::string error;  // why the line is not a message
};

std::string Trim(const std::string& text) {
    const std::size_t first = text.find_first_not_of(" \t\r\n");
    if (first == std::string::npos) {
        return std::string();
    }
    const std::size_t last = text.find_last_not_of(" \t\r\n");
    return text.substr(first, last - first + 1);
}

void ReadTrace(std::vector<Input>& inputs) {
    std::string line;
    uint32_t number = 0;
    while (std::getline(std::cin, line)) {
        ++number;
        const std::string text = Trim(line);
        if (text.empty() || text[0] == '#') {
            continue;
        }
        Input input;
        std::string reason;
        if (ParseHexMessage(text, input.bytes, reason)) {
            input.label = HexBytes(input.bytes);
        } else {
            input.label = text;
            input.error = "line " + std::to_string(number) + " of standard input: " + reason;
        }
        inputs.push_back(std::move(input));
    }
}

std::vector<Input> CollectInputs(const std::vector<std::string>& words) {
    std::vector<Input> inputs;
    for (const std::string& word : words) {
        if (word == "-") {
            ReadTrace(inputs);
            continue;
        }
        Input input;
        std::string reason;
        ParseHexMessage(word, input.bytes, reason);  // checked with the other arguments
        input.label = HexBytes(input.bytes);
        inputs.push_back(std::move(input));
    }
    return inputs;
}

std::string Heading(const Input& input, const Korvel::DecodedMessage& message, bool recognised, bool given) {
    std::string text = input.label + ": ";
    if (!recognised) {
        text += "not recognised";
        if (message.messageKind == Korvel::MessageKindNegResponse) {
            text += " (a negative response to a service the description does not have)";
        }
        return text + "\n";
    }
    text += std::string(message.instanceId) + " " + KindName(message.messageKind);
    if (!given && message.matchCount > 1) {
        if (message.messageKind == Korvel::MessageKindNegResponse) {
            text += " (" + std::to_string(message.matchCount) + " instances have request SID 0x" +
                    HexBytes({message.requestSid}) + "; the first is shown)";
        } else {
            text +=
                " (" + std::to_string(message.matchCount) + " messages match as well; the first is shown)";
        }
    }
    return text + "\n";
}

std::string NrcLine(const Korvel::DecodedMessage& message) {
    if (!message.hasNrc) {
        return std::string();
    }
    const std::string text = message.nrcText[0] != '\0' ? message.nrcText : "(not in the ECU's NRC table)";
    return "NRC 0x" + HexBytes({message.nrc}) + " " + text + "\n";
}

std::string ParamTable(const Korvel::DecodedMessage& message) {
    if (message.params.empty()) {
        return std::string();
    }
    bool anyProblem = false;
    for (const Korvel::DecodedParam& param : message.params) {
        anyProblem = anyProblem || param.problem != Korvel::CodecProblem::None;
    }
    std::vector<std::string> header = {"PARAMETER", "BYTE.BIT", "LEN", "RAW", "PHYSICAL"};
    if (anyProblem) {
        header.push_back("PROBLEM");
    }
    TextTable table(header);
    for (const Korvel::DecodedParam& param : message.params) {
        std::vector<std::string> row = {
            param.id, std::to_string(param.bitPos / 8) + "." + std::to_string(param.bitPos % 8),
            std::to_string(param.bitLength), RawCell(param), PhysicalCell(param)};
        if (anyProblem) {
            row.push_back(
                param.problem != Korvel::CodecProblem::None ? Korvel::CodecProblemText(param.problem) : "-");
        }
        table.AddRow(std::move(row));
    }
    return table.Render();
}

std::string ProblemLines(const Korvel::DecodedMessage& message) {
    std::string text;
    const Korvel::CodecProblem problem = message.problem;
    if (problem == Korvel::CodecProblem::ShortData || problem == Korvel::CodecProblem::TrailingData) {
        text += std::string("problem: ") + Korvel::CodecProblemText(problem) + " (" +
                std::to_string(message.dataLength) + " bytes, the message has " +
                std::to_string(message.length) + ")\n";
    }
    for (const Korvel::DecodedParam& param : message.params) {
        if (param.problem == Korvel::CodecProblem::None) {
            continue;
        }
        text += std::string(Korvel::IsCodecWarning(param.problem) ? "warning" : "problem") + ": parameter '" +
                param.id + "': " + Korvel::CodecProblemText(param.problem) + "\n";
    }
    return text;
}

struct DecodeTarget {
    bool given = false;  // --instance
    uint32_t instance = Korvel::InvalidIndex;
    uint32_t kind = Korvel::MessageKindRequest;
};

struct DecodeOptions {
    std::string file;
    std::vector<std::string> hex;
    std::string instance;
    MessageChoice message;
    bool json = false;
};

// Arguments are checked before the document is read; a trace ('-') is read after it.
std::string NotAMessage(const std::string& word) {
    Korvel::ByteBuffer bytes;
    std::string reason;
    return word == "-" || ParseHexMessage(word, bytes, reason) ? std::string()
                                                               : "HEX '" + word + "': " + reason;
}

void DefineDecode(CLI::App& app, DecodeOptions& options) {
    AddDocumentArgument(app, options.file);
    app.add_option("HEX", options.hex, "a message in hex; '-' reads one message a line from standard input")
        ->required()
        ->type_name("HEX")
        ->check(Rule(NotAMessage));
    CLI::Option* instance =
        app.add_option("-i,--instance", options.instance,
                       "decode the bytes as that instance's message without recognising them (its request "
                       "unless --response or --negative is given), e.g. to see why a message does not match "
                       "its constants")
            ->type_name("ID");
    AddMessageChoice(app, options.message, instance);
    AddJsonFlag(app, options.json);
}

int Decode(const DecodeOptions& options) {
    if (options.file == "-" && std::find(options.hex.begin(), options.hex.end(), "-") != options.hex.end()) {
        throw UsageError("standard input cannot hold both the document and the messages");
    }
    Document document(options.file, Korvel::ReportLevelError);
    const std::unique_ptr<Korvel::ICodec> codec = CompileCodec(document, "decode");

    DecodeTarget target;
    if (!options.instance.empty()) {
        const std::string& id = options.instance;
        target.given = true;
        target.instance = codec->FindInstance(id.c_str());
        target.kind = options.message.Kind();
        if (target.instance == Korvel::InvalidIndex) {
            throw document.NoInstance(id);
        }
        if (target.kind != Korvel::MessageKindNegResponse &&
            !codec->HasMessage(target.instance, target.kind)) {
            throw Failure("instance " + Quoted(id) + " has no " + KindName(target.kind));
        }
    }

    const std::vector<Input> inputs = CollectInputs(options.hex);
    const bool json = options.json;
    Json all = Json::array();
    Korvel::DecodedMessage message;
    bool allClean = true;
    bool first = true;
    for (const Input& input : inputs) {
        if (!input.error.empty()) {
            allClean = false;
            if (json) {
                all.push_back({{"input", input.label}, {"error", input.error}});
            } else {
                WriteAll(stdout, std::string(first ? "" : "\n") + input.error +
                                     ": not hex: " + Quoted(input.label) + "\n");
            }
            first = false;
            continue;
        }
        bool recognised = true;
        if (target.given) {
            codec->Decode(target.instance, target.kind, input.bytes.data(), input.bytes.size(), message);
        } else {
            codec->DecodeAny(input.bytes.data(), input.bytes.size(), message);
            recognised = message.problem != Korvel::CodecProblem::NotRecognised;
        }
        allClean = allClean && recognised && message.IsClean();
        if (json) {
            all.push_back(DecodedJson(input.label, message, recognised));
        } else {
            std::string text = first ? "" : "\n";
            text += Heading(input, message, recognised, target.given);
            text += NrcLine(message);
            if (recognised || message.hasNrc) {
                text += ParamTable(message);
            }
            text += ProblemLines(message);
            WriteAll(stdout, text);
        }
        first = false;
    }
    if (json) {
        PrintJson(all);
    }
    return allClean ? ExitSuccess : ExitDocumentProblem;
}

}  // namespace

void AddDecodeCommand(Cli& cli) {
    cli.Add(kDecodeHelp, DefineDecode, Decode);
}

}  // namespace zekl
