// The writer configuration: the unsigned setting, 0 by default, that no output depends on (kept
// because callers set and read it), and the switches of IWriterConfig. The fields are atomic:
// the process-wide instance may be changed by one thread while another starts a write.
#pragma once

#include <ZeKL/IWriterConfig.h>

#include <atomic>

namespace Korvel {

class ZWriterConfig : public IWriterConfig {
public:
    ZWriterConfig() = default;
    ZWriterConfig(const ZWriterConfig&) = delete;
    ZWriterConfig& operator=(const ZWriterConfig&) = delete;

    // The process-wide configuration, built on first use.
    static ZWriterConfig& Instance();

    void SetSetting(uint32_t value) override;
    uint32_t GetSetting() const override;
    void SetEncodeAllValues(bool on) override;
    bool GetEncodeAllValues() const override;
    void SetRefuseUncarriedCharacters(bool on) override;
    bool GetRefuseUncarriedCharacters() const override;

private:
    std::atomic<uint32_t> m_setting{0};
    std::atomic<bool> m_encodeAllValues{false};
    std::atomic<bool> m_refuseUncarried{false};
};

}  // namespace Korvel
