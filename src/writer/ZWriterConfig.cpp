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

void ZWriterConfig::SetEncodeAllValues(bool on) {
    m_encodeAllValues = on;
}

bool ZWriterConfig::GetEncodeAllValues() const {
    return m_encodeAllValues;
}

void ZWriterConfig::SetRefuseUncarriedCharacters(bool on) {
    m_refuseUncarried = on;
}

bool ZWriterConfig::GetRefuseUncarriedCharacters() const {
    return m_refuseUncarried;
}

}  // namespace Korvel
