// The reporting sink the reader makes for each of its own reads: a ReportCollector that
// starts with report level 2, so only FATAL and ERROR messages are handled by default.
#pragma once

#include <ZeKL/ReportCollector.h>

namespace Korvel {

class ZKLReportingHandler : public ReportCollector {
public:
    static constexpr int32_t kDefaultReportLevel = ReportLevelError;

    ZKLReportingHandler();
    explicit ZKLReportingHandler(int32_t reportLevel);
    ~ZKLReportingHandler() override;
};

}  // namespace Korvel
