#include <ZeKL/ZeKL.h>

#include <cstdio>

#include "Commands.h"
#include "Console.h"
#include "Document.h"
#include "Output.h"

namespace zekl {

namespace {

const CommandHelp kConvertHelp = {
    "convert", "read a document and write it back, optionally re-encoded",
    "zekl convert IN OUT [--encoding utf-8|Windows-1252|iso-8859-1] [--force]",
    "Reads the description document IN and writes it to OUT in the library's own layout.\n"
    "A document already in that layout comes back byte for byte. OUT is replaced only\n"
    "when the whole document has been written; IN and OUT may be the same file. An OUT of\n"
    "'-' writes the document to standard output.\n"
    "\n"
    "Nothing is lost without a word. Every attribute value is escaped and converted to the\n"
    "output encoding, so any text that encoding can carry reads back as it was. Without\n"
    "--force, convert writes nothing and exits 1 when the read reported ERROR or FATAL\n"
    "messages (their elements or values would be dropped or changed; see 'zekl check IN'),\n"
    "or when a value holds a character the output encoding cannot carry (the message\n"
    "names the item).\n",
    "Exit status: 0 when OUT was written; 1 when IN cannot be read, when converting it would\n"
    "lose something (without --force) or when OUT cannot be written; 2 for a usage error.\n"};

struct ConvertOptions {
    std::string input;
    std::string output;
    std::string encoding;
    bool force = false;
};

void DefineConvert(CLI::App& app, ConvertOptions& options) {
    AddDocumentArgument(app, options.input, "IN");
    app.add_option("OUT", options.output, "the file to write; '-' writes to standard output")
        ->required()
        ->type_name("OUT");
    app.add_option("-e,--encoding", options.encoding,
                   "encoding of OUT, in any letter case (also utf8, cp1252, latin1). Default: the encoding "
                   "IN declares, or utf-8 when it declares none or one the writer does not produce")
        ->type_name("NAME")
        ->transform(Choice(WriterEncodings(), "unknown encoding", "use utf-8, Windows-1252 or iso-8859-1"));
    app.add_flag("--force", options.force,
                 "write all the same: what the read dropped stays out, and a character the encoding cannot "
                 "carry becomes '?'");
}

// What converting would lose that is known before the write, as one line; empty when nothing:
// the read's first ERROR or FATAL message, else the first value the lint finds the model
// cannot hold as written (a factor "abc" that reads as 0, an nrc "0x21" that reads as 0).
std::string FirstLoss(Document& document) {
    if (document.HasErrors()) {
        return document.ErrorSummary();
    }
    std::vector<Korvel::LintFinding> findings;
    document.Lint(findings);
    for (const Korvel::LintFinding& finding : findings) {
        if (finding.rule == "number-text") {
            const std::string item = Korvel::ItemPathText(finding.path);
            const std::string line = PlacedLine(document.Argument(), finding.line, finding.column,
                                                (item.empty() ? "" : item + ": ") + OneLine(finding.text));
            return line.substr(0, line.size() - 1);
        }
    }
    return std::string();
}

uint32_t Write(const Korvel::IEcu& ecu, const ConvertOptions& options, const std::string& encoding,
               std::string& error) {
    Korvel::IKLWriter& writer = Korvel::GetKLWriter();
    const std::unique_ptr<Korvel::IWriterConfig> config = writer.CreateConfig();
    config->SetEncodeAllValues(true);
    config->SetRefuseUncarriedCharacters(!options.force);
    if (options.output != "-") {
        return writer.WriteToFile(ecu, options.output.c_str(), encoding.c_str(), *config, error);
    }
    std::string text;
    const uint32_t written = writer.WriteToString(ecu, text, encoding.c_str(), *config, error);
    if (written != 0 && !WriteAll(stdout, text)) {
        error = "standard output cannot be written";
        return 0;
    }
    return written;
}

int Convert(const ConvertOptions& options) {
    Document document(options.input, Korvel::ReportLevelError);
    const Korvel::IEcu& ecu = document.Require();
    const std::string loss = FirstLoss(document);
    if (!loss.empty() && !options.force) {
        throw Failure(loss +
                      "; not converted, as the output would lack what they concern (--force converts it all "
                      "the same)");
    }
    if (!loss.empty()) {
        PrintError("warning: " + loss + "; the elements concerned are not written (see 'zekl check')");
    }
    std::string encoding = options.encoding;
    if (encoding.empty()) {
        encoding = WriterEncodingName(document.DeclaredEncoding());
    }
    if (encoding.empty()) {
        encoding = "utf-8";
    }
    std::string error;
    const uint32_t written = Write(ecu, options, encoding, error);
    const std::string target = options.output == "-" ? "standard output" : Quoted(options.output);
    if (written == 0) {
        throw Failure("cannot write " + target + ": " + error);
    }
    if (options.output != "-") {
        std::printf("wrote %s: %u bytes, %s\n", target.c_str(), static_cast<unsigned>(written),
                    encoding.c_str());
    }
    return ExitSuccess;
}

}  // namespace

void AddConvertCommand(Cli& cli) {
    cli.Add(kConvertHelp, DefineConvert, Convert);
}

}  // namespace zekl
