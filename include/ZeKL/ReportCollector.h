// A ready-made reporting sink that keeps every handled message with its level, so that a
// caller can learn why a document was refused (an addition to the original design).
#pragma once

#include <ZeKL/IReporting.h>

namespace Korvel {

// One handled message of a read.
struct ReadMessage {
    int32_t level;     // 1 FATAL, 2 ERROR, 3 WARN, 4 INFO, 5 DEBUG
    std::string text;  // the message as reported
    // Additions: where the message arose (ReportPlace); 0, 0 and an empty path when the
    // message came through Report without a place.
    uint32_t line = 0;
    uint32_t column = 0;
    ItemPath path{};
};

// Level name for a report level ("FATAL" ... "DEBUG"); empty for any other number.
ZEKL_API const char* ReportLevelName(int32_t level);

// Filters by report level, keeps warnings and errors in their lists like the reader's own
// sink, and in addition records every handled message in arrival order. Output writes the
// line "LEVEL: message" to the debug output as the reader's own sink does.
//
// A hostile document can make millions of messages, so the texts of only the first
// kMaxKeptMessages handled messages are kept; the counts stay exact, and each list then ends
// with one line saying how many were left out (at the most severe level left out, in
// GetMessages).
class ZEKL_API ReportCollector : public IReporting {
public:
    static constexpr uint32_t kMaxKeptMessages = 10000;

    explicit ReportCollector(int32_t reportLevel = ReportLevelError);
    ~ReportCollector() override;
    void Debug(const std::string& message) override;
    void Info(const std::string& message) override;
    void Warn(const std::string& message) override;
    void Error(const std::string& message) override;
    void Fatal(const std::string& message) override;
    void Report(int32_t level, const std::string& message) override;
    void SetReportLevel(int32_t level) override;
    int32_t GetReportLevel() const override;
    uint32_t GetWarningCount() const override;
    uint32_t GetErrorCount() const override;
    const std::vector<std::string>& GetWarnings() const override;
    const std::vector<std::string>& GetErrors() const override;
    void Output(const std::string& levelName, const std::string& message) override;
    // Every handled message, in arrival order (see kMaxKeptMessages).
    const std::vector<ReadMessage>& GetMessages() const;
    // Handled messages whose texts were not kept; 0 when all were.
    uint64_t GetLeftOutCount() const;
    // Handles the message as Report does (through the virtual Report, so that a derived sink
    // still sees it) and keeps its place with it.
    void ReportAt(int32_t level, const std::string& message, const ReportPlace& place) override;

private:
    void UpdateLeftOutLines() const;

    mutable std::vector<std::string> warnings_;
    mutable std::vector<std::string> errors_;
    mutable std::vector<ReadMessage> messages_;
    uint64_t warningCount_ = 0;
    uint64_t errorCount_ = 0;
    uint64_t leftOut_ = 0;
    uint64_t warningsLeftOut_ = 0;
    uint64_t errorsLeftOut_ = 0;
    int32_t worstLeftOut_ = ReportLevelDebug;
    mutable bool leftOutLinesCurrent_ = true;
    int32_t reportLevel_;
    // The place of the message being handled by ReportAt; null otherwise.
    const ReportPlace* place_ = nullptr;
};

}  // namespace Korvel
