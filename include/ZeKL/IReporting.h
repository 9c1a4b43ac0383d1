// Message sink of a read: messages carry a level (1 FATAL ... 5 DEBUG) and a text.
#pragma once

#include <ZeKL/Types.h>

#include <string>
#include <vector>

namespace Korvel {

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
};

}  // namespace Korvel
