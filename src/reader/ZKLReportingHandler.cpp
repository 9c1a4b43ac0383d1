#include "reader/ZKLReportingHandler.h"

namespace Korvel {

ZKLReportingHandler::ZKLReportingHandler() : ReportCollector(kDefaultReportLevel) {}

ZKLReportingHandler::ZKLReportingHandler(int32_t reportLevel) : ReportCollector(reportLevel) {}

ZKLReportingHandler::~ZKLReportingHandler() = default;

}  // namespace Korvel
