#include "reader/ZKLReportingGuard.h"

#include "model/ZModelMemory.h"

#include <utility>

namespace Korvel {

ZKLReportingGuard::ZKLReportingGuard(std::shared_ptr<IReporting> sink) : m_sink(std::move(sink)) {}

ZKLReportingGuard::~ZKLReportingGuard() = default;

void ZKLReportingGuard::Debug(const std::string& message) {
    const ZModelMemory::Scope aside(nullptr);
    m_sink->Debug(message);
}

void ZKLReportingGuard::Info(const std::string& message) {
    const ZModelMemory::Scope aside(nullptr);
    m_sink->Info(message);
}

void ZKLReportingGuard::Warn(const std::string& message) {
    const ZModelMemory::Scope aside(nullptr);
    m_sink->Warn(message);
}

void ZKLReportingGuard::Error(const std::string& message) {
    const ZModelMemory::Scope aside(nullptr);
    m_sink->Error(message);
}

void ZKLReportingGuard::Fatal(const std::string& message) {
    const ZModelMemory::Scope aside(nullptr);
    m_sink->Fatal(message);
}

void ZKLReportingGuard::Report(int32_t level, const std::string& message) {
    const ZModelMemory::Scope aside(nullptr);
    m_sink->Report(level, message);
}

void ZKLReportingGuard::SetReportLevel(int32_t level) {
    const ZModelMemory::Scope aside(nullptr);
    m_sink->SetReportLevel(level);
}

int32_t ZKLReportingGuard::GetReportLevel() const {
    const ZModelMemory::Scope aside(nullptr);
    return m_sink->GetReportLevel();
}

uint32_t ZKLReportingGuard::GetWarningCount() const {
    const ZModelMemory::Scope aside(nullptr);
    return m_sink->GetWarningCount();
}

uint32_t ZKLReportingGuard::GetErrorCount() const {
    const ZModelMemory::Scope aside(nullptr);
    return m_sink->GetErrorCount();
}

const std::vector<std::string>& ZKLReportingGuard::GetWarnings() const {
    const ZModelMemory::Scope aside(nullptr);
    return m_sink->GetWarnings();
}

const std::vector<std::string>& ZKLReportingGuard::GetErrors() const {
    const ZModelMemory::Scope aside(nullptr);
    return m_sink->GetErrors();
}

void ZKLReportingGuard::Output(const std::string& levelName, const std::string& message) {
    const ZModelMemory::Scope aside(nullptr);
    m_sink->Output(levelName, message);
}

}  // namespace Korvel
