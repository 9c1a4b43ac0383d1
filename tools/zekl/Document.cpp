#include "Document.h"

#include <algorithm>
#include <cstdio>

#include "Cli.h"
#include "Console.h"
#include "platform/File.h"

namespace zekl {

namespace {

const char* const kStandardInput = "-";
const char* const kNotADescription =
    "not a diagnostic description document (no <ECU element in its first 5 lines)";
// The reader takes at most 4 GiB of text; more is refused before it fills the memory.
constexpr uint64_t kMaxInput = uint64_t{1} << 32;
// How much of a document shows whether it is a description.
constexpr std::size_t kDescriptionPrefix = 64 * 1024;

std::string LowerCase(std::string text) {
    for (char& c : text) {
        if (c >= 'A' && c <= 'Z') {
            c = static_cast<char>(c - 'A' + 'a');
        }
    }
    return text;
}

uint32_t CountOf(const Korvel::IMessage* message) {
    return message != nullptr ? message->GetCount() : 0;
}

// The first FATAL or ERROR message the collector holds, as one line; empty when there is none.
std::string FirstError(const Korvel::ReportCollector& collector) {
    for (const auto& message : collector.GetMessages()) {
        if (message.level == Korvel::ReportLevelFatal || message.level == Korvel::ReportLevelError) {
            return OneLine(message.text);
        }
    }
    return std::string();
}

// Where a description shows itself: its first five lines within the first 64 KiB, as the
// library tests a file (IsKorvelFile); IsKorvelText would look at the whole text.
std::string DescriptionHead(const std::string& text) {
    const std::string head = text.substr(0, kDescriptionPrefix);
    std::size_t from = 0;
    for (int line = 0; line < 5; ++line) {
        const std::size_t end = head.find('\n', from);
        if (end == std::string::npos) {
            return head;
        }
        from = end + 1;
    }
    return head.substr(0, from);
}

// Reads standard input to its end. Input that is no description is refused as soon as its head
// shows it, before an endless or huge stream (a device, another program's output) fills the
// memory.
bool ReadStandardInput(std::string& text, std::string& reason) {
    char buffer[65536];
    bool checked = false;
    for (;;) {
        const std::size_t count = std::fread(buffer, 1, sizeof buffer, stdin);
        text.append(buffer, count);
        const bool ended = count < sizeof buffer;
        if (ended && std::ferror(stdin) != 0) {
            reason = "standard input cannot be read";
            return false;
        }
        if (!checked && (ended || text.size() >= kDescriptionPrefix)) {
            checked = true;
            if (!Korvel::GetKLReader().IsKorvelText(DescriptionHead(text))) {
                reason = kNotADescription;
                return false;
            }
        }
        if (text.size() >= kMaxInput) {
            reason = "standard input holds more than 4 GiB";
            return false;
        }
        if (ended) {
            return true;
        }
    }
}

}  // namespace

Document::Document(std::string argument, int32_t level)
    : argument_(std::move(argument)), collector_(std::max<int32_t>(level, Korvel::ReportLevelError)) {}

std::string Document::Name() const {
    return argument_ == kStandardInput ? "standard input" : Quoted(argument_);
}

bool Document::Load() {
    const bool read = argument_ == kStandardInput ? LoadStandardInput() : LoadFile();
    if (read && !ecu_) {
        reason_ = FirstError(collector_);
        if (reason_.empty()) {
            reason_ = "the document was refused";
        }
    }
    return ecu_ != nullptr;
}

bool Document::CheckFile() {
    // Opening the file first gives the system's own reason ("No such file or directory"), which
    // says more to a user than the XML library's message would. The open is the library's own:
    // it never waits on a FIFO and refuses anything but a regular file.
    Korvel::Platform::InputFile file;
    if (!file.Open(argument_.c_str())) {
        reason_ = file.Reason();
        return false;
    }
    file.Close();
    std::string version;
    // Any XML file would read as an empty ECU (unknown elements are skipped), so a file that
    // the library does not recognise as a description is refused up front.
    if (!Korvel::GetKLReader().IsKorvelFile(argument_.c_str(), version, declaredEncoding_)) {
        reason_ = kNotADescription;
        return false;
    }
    return true;
}

bool Document::LoadFile() {
    if (!CheckFile()) {
        return false;
    }
    ecu_ = Korvel::GetKLReader().ReadFile(argument_.c_str(), "", collector_);
    return true;
}

bool Document::TakeStandardInput() {
    if (textTaken_) {
        return reason_.empty();
    }
    textTaken_ = true;
    if (!ReadStandardInput(text_, reason_)) {
        return false;
    }
    std::string version;
    if (!Korvel::GetKLReader().IsKorvelText(DescriptionHead(text_), version, declaredEncoding_)) {
        reason_ = kNotADescription;
        return false;
    }
    return true;
}

bool Document::LoadStandardInput() {
    if (!TakeStandardInput()) {
        return false;
    }
    ecu_ = Korvel::GetKLReader().ReadText(text_, "", collector_);
    return true;
}

bool Document::Lint(std::vector<Korvel::LintFinding>& findings) {
    if (argument_ == kStandardInput) {
        return TakeStandardInput() && Korvel::LintText(text_, findings);
    }
    return CheckFile() && Korvel::LintFile(argument_.c_str(), findings);
}

Korvel::IEcu& Document::Require() {
    if (!ecu_ && !Load()) {
        throw Failure("cannot read " + Name() + ": " + reason_);
    }
    return *ecu_;
}

std::string Document::ErrorSummary() const {
    return Name() + " has " + std::to_string(collector_.GetErrorCount()) +
           " ERROR/FATAL message(s): " + FirstError(collector_);
}

int Document::ShownStatus() const {
    if (!HasErrors()) {
        return ExitSuccess;
    }
    PrintError("warning: " + ErrorSummary() +
               "; what is shown may lack what they concern (see 'zekl check')");
    return ExitDocumentProblem;
}

Failure Document::NoInstance(const std::string& id) const {
    return Failure("no instance " + Quoted(id) + " in " + Name() + " (see 'zekl show " + argument_ + "')");
}

const std::map<std::string, std::string>& WriterEncodings() {
    static const std::map<std::string, std::string> names = {{"utf-8", "utf-8"},
                                                             {"utf8", "utf-8"},
                                                             {"windows-1252", "Windows-1252"},
                                                             {"cp1252", "Windows-1252"},
                                                             {"iso-8859-1", "iso-8859-1"},
                                                             {"latin1", "iso-8859-1"}};
    return names;
}

std::string WriterEncodingName(const std::string& name) {
    const auto found = WriterEncodings().find(LowerCase(name));
    return found != WriterEncodings().end() ? found->second : std::string();
}

uint32_t CountParameters(const Korvel::IEcu& ecu) {
    const Korvel::IInstanceContainer* instances = ecu.GetInstanceContainer();
    uint32_t count = 0;
    for (uint32_t i = 0; i < instances->GetCount(); ++i) {
        const Korvel::IInstance* instance = instances->GetInstance(i);
        if (instance == nullptr) {
            continue;
        }
        count += CountOf(instance->GetRequest()) + CountOf(instance->GetPosResponse()) +
                 CountOf(instance->GetNegResponse());
    }
    return count;
}

std::string OneLine(const std::string& text) {
    std::string line = text;
    while (!line.empty() && (line.back() == '\n' || line.back() == '\r')) {
        line.pop_back();
    }
    for (char& c : line) {
        if (c == '\n' || c == '\r') {
            c = ' ';
        }
    }
    return line;
}

}  // namespace zekl
