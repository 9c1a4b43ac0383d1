#include "FailingAllocation.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

std::atomic<std::size_t> g_failFrom{0};  // 0: no failure armed
std::atomic<std::size_t> g_refused{0};

void* Allocate(std::size_t size) {
    const std::size_t failFrom = g_failFrom.load();
    if (failFrom != 0 && size >= failFrom) {
        ++g_refused;
        return nullptr;
    }
    return std::malloc(size == 0 ? 1 : size);
}

void* AllocateOrThrow(std::size_t size) {
    void* block = Allocate(size);
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    return block;
}

}  // namespace

namespace Korvel::WriterTest {

FailingAllocation::FailingAllocation(std::size_t bytes) {
    g_failFrom = bytes;
}

FailingAllocation::~FailingAllocation() {
    g_failFrom = 0;
}

std::size_t FailingAllocation::Refused() {
    return g_refused.load();
}

}  // namespace Korvel::WriterTest

// Every form that allocates from or returns to the free store without an alignment request;
// the aligned forms keep the library's own pair.
void* operator new(std::size_t size) {
    return AllocateOrThrow(size);
}
void* operator new[](std::size_t size) {
    return AllocateOrThrow(size);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return Allocate(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    return Allocate(size);
}
void operator delete(void* block) noexcept {
    std::free(block);
}
void operator delete[](void* block) noexcept {
    std::free(block);
}
void operator delete(void* block, std::size_t) noexcept {
    std::free(block);
}
void operator delete[](void* block, std::size_t) noexcept {
    std::free(block);
}
void operator delete(void* block, const std::nothrow_t&) noexcept {
    std::free(block);
}
void operator delete[](void* block, const std::nothrow_t&) noexcept {
    std::free(block);
}
