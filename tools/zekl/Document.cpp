#include "Document.h"

#include "platform/File.h"

namespace zekl {

namespace {

std::string LowerCase(std::string text) {
    for (char& c : text) {
        if (c >= 'A' && c <= 'Z') {
            c = static_cast<char>(c - 'A' + 'a');
        }
    }
    return text;
}

// Opening the file ourselves first gives the system's own reason ("No such file or
// directory"), which says more to a user than the XML library's message would. The open is the
// library's own: it never waits on a FIFO and refuses anything but a regular file.
bool CanOpen(const std::string& path, std::string& reason) {
    Korvel::Platform::InputFile file;
    if (!file.Open(path.c_str())) {
        reason = file.Reason();
        return false;
    }
    return true;
}

uint32_t CountOf(const Korvel::IMessage* message) {
    return message != nullptr ? message->GetCount() : 0;
}

}  // namespace

bool IsReadableDocument(const std::string& path, std::string& reason) {
    if (!CanOpen(path, reason)) {
        return false;
    }
    // Any XML file would read as an empty ECU (unknown elements are skipped), so a file
    // that the library does not recognise as a description is refused up front.
    if (!Korvel::GetKLReader().IsKorvelFile(path.c_str())) {
        reason = "not a diagnostic description document (no <ECU element in its first 5 lines)";
        return false;
    }
    return true;
}

std::unique_ptr<Korvel::IEcu> ReadDocument(const std::string& path, Korvel::ReportCollector& collector,
                                           std::string& reason) {
    if (!IsReadableDocument(path, reason)) {
        return nullptr;
    }
    std::unique_ptr<Korvel::IEcu> ecu = Korvel::GetKLReader().ReadFile(path.c_str(), "", collector);
    if (!ecu) {
        reason = FirstError(collector);
        if (reason.empty()) {
            reason = "the document was refused";
        }
    }
    return ecu;
}

std::string DeclaredEncoding(const std::string& path) {
    std::string version;
    std::string encoding;
    Korvel::GetKLReader().IsKorvelFile(path.c_str(), version, encoding);
    return encoding;
}

std::string WriterEncodingName(const std::string& name) {
    const std::string lower = LowerCase(name);
    if (lower == "utf-8" || lower == "utf8") {
        return "utf-8";
    }
    if (lower == "windows-1252" || lower == "cp1252") {
        return "Windows-1252";
    }
    if (lower == "iso-8859-1" || lower == "latin1") {
        return "iso-8859-1";
    }
    return std::string();
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

std::string FirstError(const Korvel::ReportCollector& collector) {
    for (const auto& message : collector.GetMessages()) {
        if (message.level == Korvel::ReportLevelFatal || message.level == Korvel::ReportLevelError) {
            return OneLine(message.text);
        }
    }
    return std::string();
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
