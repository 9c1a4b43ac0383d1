#include "platform/MemoryAdvice.h"

#include <cstdint>

#if defined(__linux__)
#include <sys/mman.h>
#endif

namespace Korvel::Platform {

void AdviseLargeBlock(void* data, std::size_t size) noexcept {
#if defined(__linux__) && defined(MADV_HUGEPAGE)
    constexpr std::uintptr_t kHugePage = std::uintptr_t{2} << 20;
    const auto begin = reinterpret_cast<std::uintptr_t>(data);
    const std::uintptr_t first = (begin + kHugePage - 1) & ~(kHugePage - 1);
    const std::uintptr_t last = (begin + size) & ~(kHugePage - 1);
    if (data != nullptr && last > first) {
        // The advice may fail (no transparent huge pages in this kernel): the block stays as
        // it is, which is what the caller expects of a hint.
        static_cast<void>(::madvise(reinterpret_cast<void*>(first), last - first, MADV_HUGEPAGE));
    }
#else
    static_cast<void>(data);
    static_cast<void>(size);
#endif
}

}  // namespace Korvel::Platform
