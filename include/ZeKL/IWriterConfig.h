// Process-wide writer configuration: one unsigned setting, 0 by default, that no output
// currently depends on.
#pragma once

#include <ZeKL/Types.h>

namespace Korvel {

class ZEKL_API IWriterConfig {
public:
    virtual ~IWriterConfig();
    virtual void SetSetting(uint32_t value) = 0;
    virtual uint32_t GetSetting() const = 0;
};

}  // namespace Korvel
