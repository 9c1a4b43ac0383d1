// The description document a command works on: read from a file or from standard input, with
// the messages of the read and the one-line texts the commands print about it.
#pragma once

#include <ZeKL/ZeKL.h>

#include <map>
#include <memory>
#include <string>
#include <vector>

namespace zekl {

class Failure;

class Document {
public:
    // `argument` is a path, or "-" for standard input. Messages up to `level` (1 FATAL ...
    // 5 DEBUG) are kept; ERROR and FATAL ones always are.
    Document(std::string argument, int32_t level);

    // Reads the document. False when it cannot be opened, is no description or the reader
    // refused it; Reason() then says why. The messages of the read are kept either way.
    bool Load();
    // Load, or throws Failure("cannot read NAME: REASON").
    Korvel::IEcu& Require();
    // The lint's findings on the document, read again with the places of its items. False when
    // it cannot be read (Reason() says why) or the reader refused it (the findings say why).
    bool Lint(std::vector<Korvel::LintFinding>& findings);

    bool IsLoaded() const { return ecu_ != nullptr; }
    Korvel::IEcu& Ecu() { return *ecu_; }
    // As given: the path, or "-".
    const std::string& Argument() const { return argument_; }
    // For messages: the quoted path, or "standard input".
    std::string Name() const;
    const std::string& Reason() const { return reason_; }
    // The encoding the XML declaration names; empty when there is none.
    const std::string& DeclaredEncoding() const { return declaredEncoding_; }
    const Korvel::ReportCollector& Messages() const { return collector_; }
    bool HasErrors() const { return collector_.GetErrorCount() != 0; }
    // "NAME has 2 ERROR/FATAL message(s): <the first>".
    std::string ErrorSummary() const;

    // After a command showed the document (info, show): when the read had ERROR or FATAL
    // messages, what was shown may lack what they concern, so a warning line and 1; else 0.
    int ShownStatus() const;
    // The failure of an instance id that the document does not have.
    Failure NoInstance(const std::string& id) const;

private:
    bool LoadFile();
    bool LoadStandardInput();
    // The checks before a file is read: it opens as a regular file and is a description.
    bool CheckFile();
    // Standard input read to its end once, into text_, and checked to be a description.
    bool TakeStandardInput();

    std::string argument_;
    Korvel::ReportCollector collector_;
    std::unique_ptr<Korvel::IEcu> ecu_;
    std::string reason_;
    std::string declaredEncoding_;
    // Standard input, kept for a second read (Lint) since it cannot be read again.
    std::string text_;
    bool textTaken_ = false;
};

// The encoding names that convert accepts (lower case: utf-8, utf8, windows-1252, cp1252,
// iso-8859-1, latin1), each with the writer's name for it ("utf-8", "Windows-1252",
// "iso-8859-1").
const std::map<std::string, std::string>& WriterEncodings();
// The writer's name for an encoding name in any letter case; empty for any other name.
std::string WriterEncodingName(const std::string& name);

// Number of parameters in all messages of all instances.
uint32_t CountParameters(const Korvel::IEcu& ecu);

// A message as one line: some of the reader's texts end in a line end of their own (kept
// there on purpose), which is dropped here; inner line ends become blanks.
std::string OneLine(const std::string& text);

}  // namespace zekl
