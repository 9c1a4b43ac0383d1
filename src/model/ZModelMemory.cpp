#include "model/ZModelMemory.h"

#include "platform/PageMemory.h"

#include <algorithm>
#include <cstdint>

#if defined(__SANITIZE_ADDRESS__)
#define ZEKL_ADDRESS_SANITIZER 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define ZEKL_ADDRESS_SANITIZER 1
#endif
#endif

#ifdef ZEKL_ADDRESS_SANITIZER
#include <sanitizer/asan_interface.h>
#include <sanitizer/lsan_interface.h>
#define ZEKL_NO_ADDRESS_CHECK __attribute__((no_sanitize_address))
#else
#define ZEKL_NO_ADDRESS_CHECK
#endif

// The current memory is read on every allocation of a read: in a shared library a plain
// thread_local costs a call per access, the initial-exec model a single load. Its 8 bytes come
// from the static TLS room the C library keeps for libraries loaded after the program starts.
#if defined(__GNUC__) && !defined(_WIN32)
#define ZEKL_FAST_THREAD_LOCAL __attribute__((tls_model("initial-exec")))
#else
#define ZEKL_FAST_THREAD_LOCAL
#endif

namespace Korvel {

namespace {

// In front of every block: where it came from and, for a chunk's block, its size (which the
// address sanitizer build uses to mark a freed block unusable).
struct BlockHeader {
    uint32_t size;
    uint32_t origin;
};
static_assert(sizeof(BlockHeader) == kModelAlignment, "a header keeps the block aligned");

constexpr uint32_t kFromHeap = 0x48656170;   // "Heap"
constexpr uint32_t kFromChunk = 0x43686e6b;  // "Chnk"

thread_local ZModelMemory* t_current ZEKL_FAST_THREAD_LOCAL = nullptr;

std::size_t RoundUp(std::size_t value, std::size_t step) {
    return (value + step - 1) / step * step;
}

char* AlignUp(char* address, std::size_t alignment) {
    const auto value = reinterpret_cast<std::uintptr_t>(address);
    return reinterpret_cast<char*>((value + alignment - 1) & ~(static_cast<std::uintptr_t>(alignment) - 1));
}

// The address sanitizer build keeps every byte of a chunk that no live block covers marked
// unusable (block headers, free space, freed blocks), so that it reports an overrun or a use
// after free inside a chunk as it does on the heap; its leak check scans the chunks for
// pointers to heap blocks.
void MarkUnusable(const void* data, std::size_t size) {
#ifdef ZEKL_ADDRESS_SANITIZER
    ASAN_POISON_MEMORY_REGION(data, size);
#else
    static_cast<void>(data);
    static_cast<void>(size);
#endif
}

void MarkUsable(const void* data, std::size_t size) {
#ifdef ZEKL_ADDRESS_SANITIZER
    ASAN_UNPOISON_MEMORY_REGION(data, size);
#else
    static_cast<void>(data);
    static_cast<void>(size);
#endif
}

// The header of a chunk's block is marked unusable in the sanitizer build; reading it is the
// allocator's own business.
ZEKL_NO_ADDRESS_CHECK BlockHeader ReadHeader(const void* block) {
    const auto* header = static_cast<const BlockHeader*>(block) - 1;
    return BlockHeader{header->size, header->origin};
}

ZEKL_NO_ADDRESS_CHECK void WriteHeader(void* at, uint32_t size, uint32_t origin) {
    auto* header = static_cast<BlockHeader*>(at);
    header->size = size;
    header->origin = origin;
}

}  // namespace

struct ZModelMemory::Chunk {
    Chunk* next;
    std::size_t size;
};

// A recycled block holds the link to the next one of its size, and is otherwise unusable.
struct ZModelMemory::FreeBlock {
    FreeBlock* next;
};

namespace {

ZEKL_NO_ADDRESS_CHECK void Link(void* block, void* next) {
    static_cast<void**>(block)[0] = next;
}

ZEKL_NO_ADDRESS_CHECK void* NextOf(const void* block) {
    return static_cast<void* const*>(block)[0];
}

}  // namespace

ZModelMemory::ZModelMemory(std::size_t expectedBytes) noexcept : m_expectedBytes(expectedBytes) {}

ZModelMemory::~ZModelMemory() {
    Chunk* chunk = m_chunks;
    while (chunk != nullptr) {
        Chunk* next = chunk->next;
        const std::size_t size = chunk->size;
        // Memory handed back to the system must not stay marked for whoever maps it next.
        MarkUsable(chunk, size);
#ifdef ZEKL_ADDRESS_SANITIZER
        __lsan_unregister_root_region(chunk, size);
#endif
        Platform::UnmapPages(chunk, size);
        chunk = next;
    }
}

void* ZModelMemory::Allocate(std::size_t size) noexcept {
    if (size > kLargestBlock) {
        return nullptr;
    }
    const std::size_t rounded = RoundUp(size, kModelAlignment);
    if (rounded != 0 && rounded <= kLargestRecycled) {
        FreeBlock*& list = m_free[rounded / kModelAlignment];
        if (list != nullptr) {
            void* block = list;
            list = static_cast<FreeBlock*>(NextOf(block));
            WriteHeader(static_cast<BlockHeader*>(block) - 1, static_cast<uint32_t>(size), kFromChunk);
            MarkUsable(block, size);
            return block;
        }
    }
    const std::size_t need = sizeof(BlockHeader) + rounded;
    if (static_cast<std::size_t>(m_end - m_next) < need && !AddChunk()) {
        return nullptr;
    }
    if (m_next + need > m_ready) {
        PrefaultUpTo(m_next + need);
    }
    char* at = m_next;
    m_next += need;
    m_usedBytes += need;
    WriteHeader(at, static_cast<uint32_t>(size), kFromChunk);
    void* block = at + sizeof(BlockHeader);
    MarkUsable(block, size);
    return block;
}

// Only the newest chunk's blocks come back: they are recognised by their address alone, so a
// block of another memory, or of an older chunk, is never taken for one of this chunk.
bool ZModelMemory::Recycle(void* block, std::size_t size) noexcept {
    const std::size_t rounded = RoundUp(size, kModelAlignment);
    char* at = static_cast<char*>(block);
    if (rounded == 0 || rounded > kLargestRecycled || m_chunks == nullptr ||
        at < reinterpret_cast<char*>(m_chunks) || at >= m_next) {
        return false;
    }
    FreeBlock*& list = m_free[rounded / kModelAlignment];
    MarkUnusable(block, size);
    Link(block, list);
    list = static_cast<FreeBlock*>(block);
    return true;
}

// Chunks are as large as what the model is still expected to take, and past that estimate as
// large as all chunks so far; never below kSmallChunk nor above a huge page. A chunk that the
// model is expected to fill by three quarters or more gets a huge page: the unused rest costs
// less memory than its 512 faults would cost time.
bool ZModelMemory::AddChunk() noexcept {
    static_assert(sizeof(Chunk) % kModelAlignment == 0, "blocks after the chunk header stay aligned");
    static_assert(sizeof(Chunk) + sizeof(BlockHeader) + kLargestBlock <= kSmallChunk,
                  "the largest block fits into the smallest chunk");
    const std::size_t expectedRest = m_expectedBytes > m_usedBytes ? m_expectedBytes - m_usedBytes : 0;
    const std::size_t wanted =
        std::clamp(expectedRest > 0 ? expectedRest : m_chunkBytes, kSmallChunk, Platform::kHugePageSize);
    const bool huge = wanted >= Platform::kHugePageSize / 4 * 3;
    const std::size_t size = huge ? Platform::kHugePageSize : RoundUp(wanted, kSmallChunk);
    char* base = static_cast<char*>(Platform::MapPages(size, huge));
    if (base == nullptr) {
        return false;
    }
    m_ready = base;
    m_end = base + size;
    // A huge page comes whole with its first byte; a chunk of ordinary pages comes step by step.
    PrefaultUpTo(huge ? m_end : base + sizeof(Chunk));
    auto* chunk = reinterpret_cast<Chunk*>(base);
    chunk->next = m_chunks;
    chunk->size = size;
    m_chunks = chunk;
    m_next = base + sizeof(Chunk);
    m_chunkBytes += size;
    ++m_chunkCount;
#ifdef ZEKL_ADDRESS_SANITIZER
    __lsan_register_root_region(base, size);
#endif
    MarkUnusable(m_next, size - sizeof(Chunk));
    return true;
}

// Prefaults in steps of kSmallChunk: one system call per step instead of a fault per page, and
// never more than a step beyond what the blocks use.
void ZModelMemory::PrefaultUpTo(char* end) noexcept {
    char* target = std::min(AlignUp(end, kSmallChunk), m_end);
    Platform::PrefaultPages(m_ready, static_cast<std::size_t>(target - m_ready));
    m_ready = target;
}

ZModelMemory::Scope::Scope(ZModelMemory* memory) noexcept : m_previous(t_current) {
    t_current = memory;
}

ZModelMemory::Scope::~Scope() {
    t_current = m_previous;
}

ZModelMemory* ZModelMemory::Current() noexcept {
    return t_current;
}

void* ModelAllocate(std::size_t size) {
    ZModelMemory* memory = t_current;
    if (memory != nullptr) {
        if (void* block = memory->Allocate(size)) {
            return block;
        }
    }
    if (size > std::numeric_limits<std::size_t>::max() - sizeof(BlockHeader)) {
        throw std::bad_alloc();
    }
    void* at = ::operator new(sizeof(BlockHeader) + size);
    WriteHeader(at, 0, kFromHeap);
    void* block = static_cast<BlockHeader*>(at) + 1;
    // The few large blocks a read builds (the lists and indexes of large containers) come
    // fresh from the system more often than not: one call provides their pages.
    if (memory != nullptr && size > ZModelMemory::kLargestBlock) {
        Platform::PrefaultPages(block, size);
    }
    return block;
}

void ModelFree(void* block) noexcept {
    if (block == nullptr) {
        return;
    }
    const BlockHeader header = ReadHeader(block);
    if (header.origin == kFromHeap) {
        ::operator delete(static_cast<BlockHeader*>(block) - 1);
    } else if (header.origin == kFromChunk) {
        // While a read builds its model, what it frees of the newest chunk serves it again.
        ZModelMemory* memory = t_current;
        if (memory == nullptr || !memory->Recycle(block, header.size)) {
            MarkUnusable(block, header.size);
        }
    }
}

}  // namespace Korvel
