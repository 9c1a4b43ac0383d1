// Passes every call to the reporting sink of a read with the model's memory put aside. The sink
// may be the caller's code: whatever it builds must not land in the memory of the model being
// read, which goes with that model (see model/ZModelMemory.h).
#pragma once

#include <ZeKL/IReporting.h>

#include <memory>

namespace Korvel {

class ZKLReportingGuard : public IReporting {
public:
    explicit ZKLReportingGuard(std::shared_ptr<IReporting> sink);
    ~ZKLReportingGuard() override;

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

private:
    std::shared_ptr<IReporting> m_sink;
};

}  // namespace Korvel
