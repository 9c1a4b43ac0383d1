#include <ZeKL/ReportCollector.h>

#include "reader/ReaderMessages.h"

namespace Korvel {

const char* ReportLevelName(int32_t level) {
    return ReaderMessages::LevelName(level);
}

}  // namespace Korvel
