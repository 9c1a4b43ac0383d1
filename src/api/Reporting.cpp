#include <ZeKL/IReporting.h>

#include "model/ZItemPath.h"

namespace Korvel {

// Sinks written before places existed implement only Report; they receive every message there.
void IReporting::ReportAt(int32_t level, const std::string& message, const ReportPlace& /*place*/) {
    Report(level, message);
}

std::string ItemPathText(const ItemPath& path) {
    try {
        return ItemPathToText(path);
    } catch (...) {
        return std::string();
    }
}

}  // namespace Korvel
