#include <ZeKL/Exports.h>

namespace Korvel {

// The numeric form deliberately reports patch 0 while the text carries 1: callers of the
// original library compare both as they are.
void GetVersion(uint32_t& major, uint32_t& minor, uint32_t& patch, uint32_t& build) {
    major = 3;
    minor = 0;
    patch = 0;
    build = 0;
}

const char* GetVersionString() {
    return "3.0.1";
}

}  // namespace Korvel
