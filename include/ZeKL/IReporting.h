// Message sink of a read: messages carry a level (1 FATAL ... 5 DEBUG) and a text.
#pragma once

#include <ZeKL/ItemPath.h>
#include <ZeKL/Types.h>

#include <string>
#include <vector>

namespace Korvel {

// Where a message of a read arose (an addition to the original design).
struct ReportPlace {
    uint32_t line = 0;    // line where the element concerned starts (1 is the first); 0 when unknown
    uint32_t column = 0;  // column of its "<", counted in characters from 1; 0 when unknown
    ItemPath path;        // the item the message concerns; empty when there is none
};

class ZEKL_API IReporting {
public:
    virtual ~IReporting();
    // Dropped, whatever the report level.
    virtual void Debug(const std::string& message) = 0;
    virtual void Info(const std::string& message) = 0;
    virtual void Warn(const std::string& message) = 0;
    virtual void Error(const std::string& message) = 0;
    virtual void Fatal(const std::string& message) = 0;
    // Handles the message when level <= report level.
    virtual void Report(int32_t level, const std::string& message) = 0;
    virtual void SetReportLevel(int32_t level) = 0;
    virtual int32_t GetReportLevel() const = 0;
    virtual uint32_t GetWarningCount() const = 0;
    // Errors and fatal errors.
    virtual uint32_t GetErrorCount() const = 0;
    virtual const std::vector<std::string>& GetWarnings() const = 0;
    virtual const std::vector<std::string>& GetErrors() const = 0;
    // Emits one handled message.
    virtual void Output(const std::string& levelName, const std::string& message) = 0;

    // Addition: a message with the place it concerns. The reader reports through this
    // operation wherever it knows the place. The default forwards to Report(level, message), so
    // a sink written before places existed receives every message as before;
    // ReportCollector keeps the place with the message.
    virtual void ReportAt(int32_t level, const std::string& message, const ReportPlace& place);
};

}  // namespace Korvel
