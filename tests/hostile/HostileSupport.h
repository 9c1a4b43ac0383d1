// Helpers shared by the hostile-input tests: reading through the public reader with a
// collecting sink, walking every text of a model, and scratch folders.
#pragma once

#include "ModelTexts.h"
#include "Utf8Check.h"

#include <ZeKL/ZeKL.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include <unistd.h>

namespace Korvel::HostileTest {

struct ReadResult {
    std::unique_ptr<IEcu> ecu;
    ReportCollector report{ReportLevelError};

    bool HasFatal() const {
        for (const ReadMessage& message : report.GetMessages()) {
            if (message.level == ReportLevelFatal) {
                return true;
            }
        }
        return false;
    }
    std::string AllMessages() const {
        std::string all;
        for (const ReadMessage& message : report.GetMessages()) {
            all += ReportLevelName(message.level);
            all += ": ";
            all += message.text;
            all += "\n";
        }
        return all;
    }
};

inline std::unique_ptr<ReadResult> ReadBytes(const std::string& bytes, const char* encoding = "") {
    auto result = std::make_unique<ReadResult>();
    result->ecu =
        GetKLReader().ReadMemory(bytes.data(), static_cast<uint32_t>(bytes.size()), encoding, result->report);
    return result;
}

inline std::unique_ptr<ReadResult> ReadPath(const std::string& path, const char* encoding = "") {
    auto result = std::make_unique<ReadResult>();
    result->ecu = GetKLReader().ReadFile(path.c_str(), encoding, result->report);
    return result;
}

// Every text the model holds (ids, values, units, NRC and table texts), in model order.
inline std::vector<std::string> CollectTexts(const IEcu& ecu) {
    std::vector<std::string> texts;
    VisitTexts(ecu,
               [&texts](const char* text, TextKind) { texts.emplace_back(text != nullptr ? text : ""); });
    return texts;
}

inline bool ModelMentions(const IEcu& ecu, const std::string& needle) {
    for (const std::string& text : CollectTexts(ecu)) {
        if (text.find(needle) != std::string::npos) {
            return true;
        }
    }
    return false;
}

inline std::string ReadWholeFile(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

inline void WriteWholeFile(const std::filesystem::path& path, const std::string& content) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out << content;
}

inline bool RunningAsRoot() {
    return geteuid() == 0;
}

// A fresh folder below the system's temporary folder, removed with everything in it.
class ScratchFolder {
public:
    ScratchFolder() {
        std::string pattern = (std::filesystem::temp_directory_path() / "zekl-hostile-XXXXXX").string();
        std::vector<char> buffer(pattern.begin(), pattern.end());
        buffer.push_back('\0');
        const char* made = mkdtemp(buffer.data());
        if (made != nullptr) {
            path_ = made;
        }
    }
    ~ScratchFolder() {
        std::error_code ignored;
        // Give back any permission a test took away, so that the folder can be removed.
        std::filesystem::permissions(path_, std::filesystem::perms::owner_all,
                                     std::filesystem::perm_options::add, ignored);
        for (const auto& entry : std::filesystem::recursive_directory_iterator(path_, ignored)) {
            std::filesystem::permissions(entry.path(), std::filesystem::perms::owner_all,
                                         std::filesystem::perm_options::add, ignored);
        }
        std::filesystem::remove_all(path_, ignored);
    }
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    const std::filesystem::path& Path() const { return path_; }
    std::filesystem::path operator/(const std::string& name) const { return path_ / name; }
    bool Valid() const { return !path_.empty(); }

private:
    std::filesystem::path path_;
};

// A small but complete document that touches every element of the format.
inline const std::string& SampleDocument() {
    static const std::string document =
        "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
        "<ECU protocol=\"UDS\">\n"
        " <NEGATIVE_RESPONSE_CODES>\n"
        "  <MAP nrc=\"16\" text=\"General reject\"/>\n"
        "  <MAP nrc=\"17\" text=\"Service &amp; more &lt;x&gt; &#228; \xC3\x9C"
        "ber\"/>\n"
        " </NEGATIVE_RESPONSE_CODES>\n"
        " <INSTANCE id=\"ReadVin\">\n"
        "  <REQUEST>\n"
        "   <PARAMETER id=\"SID\" bitPos=\"0\" bitLen=\"8\" type=\"none\" unit=\"\" value=\"22\" "
        "semantics=\"SID CONST\" convId=\"\"/>\n"
        "   <PARAMETER id=\"DID\" bitPos=\"8\" bitLen=\"16\" type=\"unsigned\" unit=\"\" value=\"61840\" "
        "semantics=\"CONST MOTOROLA\" convId=\"\"/>\n"
        "  </REQUEST>\n"
        "  <RESPONSE>\n"
        "   <PARAMETER id=\"SID\" bitPos=\"0\" bitLen=\"8\" type=\"none\" unit=\"\" value=\"62\" "
        "semantics=\"SID CONST\" convId=\"\"/>\n"
        "   <PARAMETER id=\"Vin\" bitPos=\"24\" bitLen=\"136\" type=\"ascii\" unit=\"\" value=\"\" "
        "semantics=\"\" convId=\"\"/>\n"
        "   <PARAMETER id=\"State\" bitPos=\"160\" bitLen=\"8\" type=\"unsigned\" unit=\"\" value=\"\" "
        "semantics=\"\" convId=\"State_ValueTable\"/>\n"
        "  </RESPONSE>\n"
        "  <NEGATIVE_RESPONSE>\n"
        "  </NEGATIVE_RESPONSE>\n"
        " </INSTANCE>\n"
        " <CONVERSION id=\"Speed_Formula\" factor=\"0.5000000000000000\" offset=\"-40.0000000000000000\"/>\n"
        " <CONVERSION id=\"State_ValueTable\" factor=\"1.0000000000000000\" offset=\"0.0000000000000000\">\n"
        "  <MAP val=\"0\" text=\"off\" />\n"
        "  <MAP val=\"1\" text=\"on\" />\n"
        " </CONVERSION>\n"
        "</ECU>\n";
    return document;
}

}  // namespace Korvel::HostileTest
