#include <ZeKL/ReportCollector.h>

#include "platform/DebugOutput.h"
#include "reader/ReaderMessages.h"

#include <algorithm>
#include <cstdint>
#include <utility>

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
    const bool warning = level == ReportLevelWarn;
    const bool error = level == ReportLevelFatal || level == ReportLevelError;
    warningCount_ += warning ? 1 : 0;
    errorCount_ += error ? 1 : 0;
    if (leftOut_ == 0 && messages_.size() < kMaxKeptMessages) {
        if (warning) {
            warnings_.push_back(message);
        } else if (error) {
            errors_.push_back(message);
        }
        ReadMessage kept{level, message};
        if (place_ != nullptr) {
            kept.line = place_->line;
            kept.column = place_->column;
            kept.path = place_->path;
        }
        messages_.push_back(std::move(kept));
    } else {
        ++leftOut_;
        warningsLeftOut_ += warning ? 1 : 0;
        errorsLeftOut_ += error ? 1 : 0;
        worstLeftOut_ = std::min(worstLeftOut_, level);
        leftOutLinesCurrent_ = false;
    }
    Output(ReaderMessages::LevelName(level), message);
}

void ReportCollector::ReportAt(int32_t level, const std::string& message, const ReportPlace& place) {
    // Report stays the one way a message is handled, also for a sink derived from this one
    // that overrides it; the place rides along for the time of the call.
    struct PlaceScope {
        const ReportPlace*& slot;
        ~PlaceScope() { slot = nullptr; }
    } scope{place_};
    place_ = &place;
    Report(level, message);
}

// The lines that say how many texts were left out are written when a list is asked for, not
// for each message left out.
void ReportCollector::UpdateLeftOutLines() const {
    if (leftOutLinesCurrent_) {
        return;
    }
    const auto update = [](auto& list, std::size_t kept, auto&& line) {
        if (list.size() > kept) {
            list.back() = line;
        } else {
            list.push_back(line);
        }
    };
    update(messages_, kMaxKeptMessages,
           ReadMessage{worstLeftOut_, ReaderMessages::LeftOutText(leftOut_, kMaxKeptMessages)});
    if (warningsLeftOut_ > 0) {
        update(warnings_, warningCount_ - warningsLeftOut_,
               ReaderMessages::LeftOutText(warningsLeftOut_, kMaxKeptMessages));
    }
    if (errorsLeftOut_ > 0) {
        update(errors_, errorCount_ - errorsLeftOut_,
               ReaderMessages::LeftOutText(errorsLeftOut_, kMaxKeptMessages));
    }
    leftOutLinesCurrent_ = true;
}

uint64_t ReportCollector::GetLeftOutCount() const {
    return leftOut_;
}

void ReportCollector::SetReportLevel(int32_t level) {
    reportLevel_ = level;
}

int32_t ReportCollector::GetReportLevel() const {
    return reportLevel_;
}

// Counts beyond the 32 bits of the interface stay at the largest number it can give.
uint32_t ReportCollector::GetWarningCount() const {
    return static_cast<uint32_t>(std::min<uint64_t>(warningCount_, UINT32_MAX));
}

uint32_t ReportCollector::GetErrorCount() const {
    return static_cast<uint32_t>(std::min<uint64_t>(errorCount_, UINT32_MAX));
}

const std::vector<std::string>& ReportCollector::GetWarnings() const {
    UpdateLeftOutLines();
    return warnings_;
}

const std::vector<std::string>& ReportCollector::GetErrors() const {
    UpdateLeftOutLines();
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
    UpdateLeftOutLines();
    return messages_;
}

}  // namespace Korvel
