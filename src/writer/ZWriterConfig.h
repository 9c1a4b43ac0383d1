// The writer configuration: one unsigned setting, 0 by default. No output depends on it yet;
// it is kept because callers set and read it.
#pragma once

#include <ZeKL/IWriterConfig.h>

namespace Korvel {

class ZWriterConfig : public IWriterConfig {
public:
    // The process-wide configuration, built on first use.
    static ZWriterConfig& Instance();

    void SetSetting(uint32_t value) override;
    uint32_t GetSetting() const override;

private:
    uint32_t m_setting = 0;
};

}  // namespace Korvel
