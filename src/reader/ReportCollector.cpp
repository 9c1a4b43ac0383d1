#include <ZeKL/ReportCollector.h>

#include "platform/DebugOutput.h"
#include "reader/ReaderMessages.h"

namespace Korvel {

ReportCollector::ReportCollector(int32_t reportLevel) : reportLevel_(reportLevel) {}

ReportCollector::~ReportCollector() = default;

// Messages sent through Debug are dropped whatever the report level; DEBUG traces reach a
// sink only through Report with level 5.
void ReportCollector::Debug(const std::string& /*message*/) {}

void ReportCollector::Info(const std::string& message) {
    Report(ReportLevelInfo, message);
}

void ReportCollector::Warn(const std::string& message) {
    Report(ReportLevelWarn, message);
}

void ReportCollector::Error(const std::string& message) {
    Report(ReportLevelError, message);
}

void ReportCollector::Fatal(const std::string& message) {
    Report(ReportLevelFatal, message);
}

void ReportCollector::Report(int32_t level, const std::string& message) {
    if (level > reportLevel_) {
        return;
    }
    if (level == ReportLevelWarn) {
        warnings_.push_back(message);
    } else if (level == ReportLevelFatal || level == ReportLevelError) {
        errors_.push_back(message);
    }
    messages_.push_back(ReadMessage{level, message});
    Output(ReaderMessages::LevelName(level), message);
}

void ReportCollector::SetReportLevel(int32_t level) {
    reportLevel_ = level;
}

int32_t ReportCollector::GetReportLevel() const {
    return reportLevel_;
}

uint32_t ReportCollector::GetWarningCount() const {
    return static_cast<uint32_t>(warnings_.size());
}

uint32_t ReportCollector::GetErrorCount() const {
    return static_cast<uint32_t>(errors_.size());
}

const std::vector<std::string>& ReportCollector::GetWarnings() const {
    return warnings_;
}

const std::vector<std::string>& ReportCollector::GetErrors() const {
    return errors_;
}

void ReportCollector::Output(const std::string& levelName, const std::string& message) {
    std::string line;
    line.reserve(levelName.size() + message.size() + 3);
    line.append(levelName)
        .append(ReaderMessages::kLevelSeparator)
        .append(message)
        .append(ReaderMessages::kLineEnd);
    Platform::DebugOutput(line);
}

const std::vector<ReadMessage>& ReportCollector::GetMessages() const {
    return messages_;
}

}  // namespace Korvel
