#include <ZeKL/ZeKL.h>

#include <cstdio>
#include <string>
#include <vector>

#include "Arguments.h"
#include "CodecOutput.h"
#include "Commands.h"
#include "Console.h"
#include "Document.h"

namespace zekl {

namespace {

const char* const kEncodeHelp =
    "Usage: zekl encode FILE INSTANCE [--response|--negative] [--json] NAME=VALUE...\n"
    "\n"
    "Prints the bytes of a message of INSTANCE (its request unless --response or\n"
    "--negative is given) in hex, with the values given for its parameters. CONST\n"
    "parameters fill themselves and GAP parameters are zero unless a value is given for\n"
    "them; every other parameter needs a value.\n"
    "\n"
    "VALUE is the parameter's natural form: the physical value for a formula (it is\n"
    "turned into the raw value and rounded to the nearest integer), the entry's text for a\n"
    "value table, the text for ascii, utf8 and ucs2, hex bytes for none, the number\n"
    "otherwise (0x for hex, a leading 0 for octal). NAME=raw:VALUE gives the raw value\n"
    "instead. Numbers must be numbers to their end.\n"
    "\n"
    "Options:\n"
    "  --response  the instance's positive response\n"
    "  --negative  the instance's negative response (7F, request SID, NRC when the\n"
    "              instance describes none)\n"
    "  --json      an object with instance, kind, hex (the bytes in hex without blanks)\n"
    "              and bytes (a list of numbers)\n"
    "\n"
    "Exit status: 0 success, 1 when the message cannot be encoded (a missing value, a value\n"
    "out of range, no such instance, ...) or the document cannot be read, 2 for a usage\n"
    "error (such as an argument without '=').\n";

std::vector<Korvel::EncodeValue> ParseValues(const std::vector<std::string>& words) {
    std::vector<Korvel::EncodeValue> values;
    for (const std::string& word : words) {
        const std::size_t equals = word.find('=');
        if (equals == std::string::npos || equals == 0) {
            throw UsageError("encode", "'" + word + "' is not NAME=VALUE");
        }
        std::string value = word.substr(equals + 1);
        const bool raw = value.rfind("raw:", 0) == 0;
        if (raw) {
            value.erase(0, 4);
        }
        values.push_back(Korvel::EncodeValue::Text(word.substr(0, equals), value, raw));
    }
    return values;
}

std::string PlainHex(const Korvel::ByteBuffer& bytes) {
    std::string hex = HexBytes(bytes);
    std::string plain;
    for (char c : hex) {
        if (c != ' ') {
            plain += c;
        }
    }
    return plain;
}

}  // namespace

int RunEncode(const Words& args) {
    Arguments arguments("encode", {{"response", 0, false}, {"negative", 0, false}, {"json", 0, false}}, args);
    if (arguments.HelpRequested()) {
        std::fputs(kEncodeHelp, stdout);
        return ExitSuccess;
    }
    const std::vector<std::string>& positionals = arguments.Positionals();
    if (positionals.empty()) {
        throw UsageError("encode", "missing argument FILE");
    }
    if (positionals.size() < 2) {
        throw UsageError("encode", "missing argument INSTANCE");
    }
    if (arguments.Has("response") && arguments.Has("negative")) {
        throw UsageError("encode", "--response and --negative exclude each other");
    }
    const std::string path = positionals[0];
    const std::string id = positionals[1];
    const std::vector<Korvel::EncodeValue> values =
        ParseValues(std::vector<std::string>(positionals.begin() + 2, positionals.end()));
    const uint32_t kind = arguments.Has("response")   ? Korvel::MessageKindPosResponse
                          : arguments.Has("negative") ? Korvel::MessageKindNegResponse
                                                      : Korvel::MessageKindRequest;

    Korvel::ReportCollector collector(Korvel::ReportLevelError);
    std::string reason;
    std::unique_ptr<Korvel::IEcu> ecu = ReadDocument(path, collector, reason);
    if (!ecu) {
        PrintError("cannot read " + Quoted(path) + ": " + reason);
        return ExitDocumentProblem;
    }
    const std::unique_ptr<Korvel::ICodec> codec = Korvel::CreateCodec(*ecu);
    if (!codec) {
        PrintError("cannot encode with " + Quoted(path) + ": out of memory");
        return ExitDocumentProblem;
    }
    const uint32_t instance = codec->FindInstance(id.c_str());
    if (instance == Korvel::InvalidIndex) {
        PrintError("no instance " + Quoted(id) + " in " + Quoted(path) + " (see 'zekl show " + path + "')");
        return ExitDocumentProblem;
    }
    Korvel::ByteBuffer bytes;
    Korvel::CodecError error;
    if (!codec->Encode(instance, kind, values, bytes, error)) {
        const std::string what = error.problem == Korvel::CodecProblem::NoSuchMessage
                                     ? "instance " + Quoted(id) + " has no " + KindName(kind)
                                     : error.message;
        PrintError("cannot encode the " + KindName(kind) + " of " + Quoted(id) + ": " + what);
        return ExitDocumentProblem;
    }
    if (arguments.Has("json")) {
        nlohmann::ordered_json json;
        json["instance"] = id;
        json["kind"] = KindKey(kind);
        json["hex"] = PlainHex(bytes);
        json["bytes"] = bytes;
        WriteAll(stdout, JsonText(json));
    } else {
        WriteAll(stdout, HexBytes(bytes) + "\n");
    }
    return ExitSuccess;
}

}  // namespace zekl
