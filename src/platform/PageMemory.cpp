#include "platform/PageMemory.h"

#include <atomic>
#include <cerrno>
#include <cstdint>

#ifdef _WIN32
#include <windows.h>
#else
#include <sys/mman.h>
#include <unistd.h>
#endif

// Linux 5.14 and later; older C libraries do not name it yet.
#if defined(__linux__) && !defined(MADV_POPULATE_WRITE)
#define MADV_POPULATE_WRITE 23
#endif

// The build chooses whether to prefault (the CMake option of the same name, on by default).
#ifndef ZEKL_PREFAULT
#define ZEKL_PREFAULT 1
#endif

namespace Korvel::Platform {

#ifdef _WIN32

// Windows commits pages on first touch as well.
void* MapPages(std::size_t size) noexcept {
    return size != 0 ? ::VirtualAlloc(nullptr, size, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE) : nullptr;
}

void UnmapPages(void* block, std::size_t /*size*/) noexcept {
    if (block != nullptr) {
        ::VirtualFree(block, 0, MEM_RELEASE);
    }
}

void PrefaultPages(void* /*data*/, std::size_t /*size*/) noexcept {}

#else

namespace {

std::uintptr_t AlignUp(std::uintptr_t value, std::uintptr_t alignment) {
    return (value + alignment - 1) & ~(alignment - 1);
}

}  // namespace

void* MapPages(std::size_t size) noexcept {
    if (size == 0) {
        return nullptr;
    }
    void* block = ::mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    return block != MAP_FAILED ? block : nullptr;
}

void UnmapPages(void* block, std::size_t size) noexcept {
    if (block != nullptr && size != 0) {
        ::munmap(block, size);
    }
}

void PrefaultPages(void* data, std::size_t size) noexcept {
#ifdef MADV_POPULATE_WRITE
    // Kernels before 5.14 refuse the advice; then the pages come on first touch, as they do
    // without it, and no further call is made.
    static std::atomic<bool> supported{true};
    static const auto pageSize = static_cast<std::uintptr_t>(::sysconf(_SC_PAGESIZE));
    if (!PrefaultPolicy() || data == nullptr || size == 0 || !supported.load(std::memory_order_relaxed)) {
        return;
    }
    // The advice takes whole pages: those that hold the range.
    const auto begin = reinterpret_cast<std::uintptr_t>(data) & ~(pageSize - 1);
    const std::uintptr_t end = AlignUp(reinterpret_cast<std::uintptr_t>(data) + size, pageSize);
    if (::madvise(reinterpret_cast<void*>(begin), end - begin, MADV_POPULATE_WRITE) != 0 && errno == EINVAL) {
        supported.store(false, std::memory_order_relaxed);
    }
#else
    static_cast<void>(data);
    static_cast<void>(size);
#endif
}

#endif

bool PrefaultPolicy() noexcept {
    return ZEKL_PREFAULT != 0;
}

}  // namespace Korvel::Platform
