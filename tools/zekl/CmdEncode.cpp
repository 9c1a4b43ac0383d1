#include <ZeKL/ZeKL.h>

#include <cstdio>
#include <string>
#include <vector>

#include "CodecOutput.h"
#include "Commands.h"
#include "Console.h"
#include "Document.h"

namespace zekl {

namespace {

const CommandHelp kEncodeHelp = {
    "encode", "print the bytes of a message from values of its parameters",
    "zekl encode FILE INSTANCE [--response|--negative] [--json] NAME=VALUE...",
    "Prints the bytes of a message of INSTANCE (its request unless --response or\n"
    "--negative is given) in hex, with the values given for its parameters. CONST\n"
    "parameters fill themselves and GAP parameters are zero unless a value is given for\n"
    "them; every other parameter needs a value.\n"
    "\n"
    "VALUE is the parameter's natural form: the physical value for a formula (it is\n"
    "turned into the raw value and rounded to the nearest integer), the entry's text for a\n"
    "value table, the text for ascii, utf8 and ucs2, hex bytes for none, the number\n"
    "otherwise (0x for hex, a leading 0 for octal). NAME=raw:VALUE gives the raw value\n"
    "instead. Numbers must be numbers to their end.\n",
    "Exit status: 0 success, 1 when the message cannot be encoded (a missing value, a value\n"
    "out of range, no such instance, ...) or the document cannot be read, 2 for a usage\n"
    "error (such as an argument without '=').\n"};

// In the order of the usage line.
struct EncodeOptions {
    std::string file;
    std::string instance;
    MessageChoice message;
    bool json = false;
    std::vector<std::string> values;
};

std::string NotNameAndValue(const std::string& word) {
    const std::size_t equals = word.find('=');
    return equals == std::string::npos || equals == 0 ? "'" + word + "' is not NAME=VALUE" : std::string();
}

void DefineEncode(CLI::App& app, EncodeOptions& options) {
    AddDocumentArgument(app, options.file);
    app.add_option("INSTANCE", options.instance, "the id of the service instance")
        ->required()
        ->type_name("INSTANCE");
    AddMessageChoice(app, options.message);
    AddJsonFlag(app, options.json);
    app.add_option("NAME=VALUE", options.values, "a value for the parameter NAME")
        ->type_name("NAME=VALUE")
        ->check(Rule(NotNameAndValue));
}

std::vector<Korvel::EncodeValue> ParseValues(const std::vector<std::string>& words) {
    std::vector<Korvel::EncodeValue> values;
    for (const std::string& word : words) {
        const std::size_t equals = word.find('=');  // checked with the other arguments
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

int Encode(const EncodeOptions& options) {
    const std::string& id = options.instance;
    const std::vector<Korvel::EncodeValue> values = ParseValues(options.values);
    const uint32_t kind = options.message.Kind();
    Document document(options.file, Korvel::ReportLevelError);
    const std::unique_ptr<Korvel::ICodec> codec = CompileCodec(document, "encode");
    const uint32_t instance = codec->FindInstance(id.c_str());
    if (instance == Korvel::InvalidIndex) {
        throw document.NoInstance(id);
    }
    Korvel::ByteBuffer bytes;
    Korvel::CodecError error;
    if (!codec->Encode(instance, kind, values, bytes, error)) {
        const std::string what = error.problem == Korvel::CodecProblem::NoSuchMessage
                                     ? "instance " + Quoted(id) + " has no " + KindName(kind)
                                     : error.message;
        throw Failure("cannot encode the " + KindName(kind) + " of " + Quoted(id) + ": " + what);
    }
    if (options.json) {
        PrintJson({{"instance", id}, {"kind", KindKey(kind)}, {"hex", PlainHex(bytes)}, {"bytes", bytes}});
    } else {
        WriteAll(stdout, HexBytes(bytes) + "\n");
    }
    return ExitSuccess;
}

}  // namespace

void AddEncodeCommand(Cli& cli) {
    cli.Add(kEncodeHelp, DefineEncode, Encode);
}

}  // namespace zekl
