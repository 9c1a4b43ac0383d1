#include "writer/ZWriterConfig.h"

namespace Korvel {

ZWriterConfig& ZWriterConfig::Instance() {
    static ZWriterConfig config;
    return config;
}

void ZWriterConfig::SetSetting(uint32_t value) {
    m_setting = value;
}

uint32_t ZWriterConfig::GetSetting() const {
    return m_setting;
}

}  // namespace Korvel
