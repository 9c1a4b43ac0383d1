#include "model/ZModelArena.h"

#include "platform/PageMemory.h"

#include <algorithm>

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

namespace Korvel {

namespace {

std::size_t RoundUp(std::size_t value, std::size_t step) {
    return (value + step - 1) / step * step;
}

// The address sanitizer build keeps every byte of a chunk that no live block covers marked
// unusable (free space, blocks given back), so that it reports an overrun or a use after free
// inside a chunk as it does on the heap; its leak check scans the chunks for pointers to heap
// blocks.
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

void WatchForPointers(void* data, std::size_t size) {
#ifdef ZEKL_ADDRESS_SANITIZER
    __lsan_register_root_region(data, size);
#else
    static_cast<void>(data);
    static_cast<void>(size);
#endif
}

void StopWatching(void* data, std::size_t size) {
#ifdef ZEKL_ADDRESS_SANITIZER
    __lsan_unregister_root_region(data, size);
#else
    static_cast<void>(data);
    static_cast<void>(size);
#endif
}

}  // namespace

struct ZModelArena::Chunk {
    Chunk* next;
    std::size_t size;
};

// A block given back holds the link to the next one of its size, and is otherwise unusable.
struct ZModelArena::FreeBlock {
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

ZModelArena::ZModelArena(std::size_t expectedBytes) noexcept : m_expectedBytes(expectedBytes) {}

ZModelArena::~ZModelArena() {
    Chunk* chunk = m_chunks;
    while (chunk != nullptr) {
        Chunk* next = chunk->next;
        const std::size_t size = chunk->size;
        // Memory handed back to the system must not stay marked for whoever maps it next.
        MarkUsable(chunk, size);
        StopWatching(chunk, size);
        Platform::UnmapPages(chunk, size);
        chunk = next;
    }
}

void* ZModelArena::Allocate(std::size_t size) {
    return size > kLargestBlock ? AllocateLarge(size) : AllocateInChunk(size);
}

void ZModelArena::Deallocate(void* block, std::size_t size) noexcept {
    if (block == nullptr) {
        return;
    }
    if (size > kLargestBlock) {
        const std::size_t mapped = RoundUp(size, kSmallestChunk);
        m_largeBytes -= mapped;
        MarkUsable(block, mapped);
        StopWatching(block, mapped);
        Platform::UnmapPages(block, mapped);
        return;
    }
    ReleaseInChunk(block, size);
}

void* ZModelArena::AllocateItem(std::size_t size) {
    return AllocateInChunk(size);
}

void ZModelArena::ReleaseItem(void* block, std::size_t size) noexcept {
    if (block != nullptr) {
        ReleaseInChunk(block, size);
    }
}

void* ZModelArena::AllocateInChunk(std::size_t size) {
    if (size > std::numeric_limits<std::size_t>::max() - kLargestChunk) {
        throw std::bad_alloc();
    }
    const std::size_t rounded = std::max(RoundUp(size, kModelAlignment), kModelAlignment);
    if (rounded <= kLargestRecycled) {
        FreeBlock*& list = m_free[rounded / kModelAlignment];
        if (list != nullptr) {
            void* block = list;
            list = static_cast<FreeBlock*>(NextOf(block));
            MarkUsable(block, size);
            return block;
        }
    }
    if (static_cast<std::size_t>(m_end - m_next) < rounded) {
        AddChunk(rounded);
    }
    char* block = m_next;
    m_next += rounded;
    if (m_next > m_ready) {
        PrefaultUpTo(m_next);
    }
    m_usedBytes += rounded;
    // Only the bytes asked for: the sanitizer build sees an overrun into the rounding.
    MarkUsable(block, size);
    return block;
}

// A block is reused for blocks of the size it is given back with, which may be less than it
// has: that wastes its rest, never more than it has.
void ZModelArena::ReleaseInChunk(void* block, std::size_t size) noexcept {
    if (m_tearingDown) {
        return;
    }
    const std::size_t rounded = std::max(RoundUp(size, kModelAlignment), kModelAlignment);
    MarkUnusable(block, rounded);
    if (rounded <= kLargestRecycled) {
        FreeBlock*& list = m_free[rounded / kModelAlignment];
        Link(block, list);
        list = static_cast<FreeBlock*>(block);
    }
}

// Chunks are as large as what the model is still expected to take, and past that estimate as
// large as all chunks so far (so their number grows with the logarithm of the model's size);
// never below a page nor above a huge page, and always large enough for the block at hand.
void ZModelArena::AddChunk(std::size_t need) {
    static_assert(sizeof(Chunk) % kModelAlignment == 0, "blocks after the chunk header stay aligned");
    const std::size_t expectedRest = m_expectedBytes > m_usedBytes ? m_expectedBytes - m_usedBytes : 0;
    const std::size_t wanted =
        std::clamp(std::max(expectedRest, m_chunkBytes), kSmallestChunk, kLargestChunk);
    const std::size_t size = RoundUp(std::max(wanted, sizeof(Chunk) + need), kSmallestChunk);
    char* base = static_cast<char*>(Platform::MapPages(size));
    if (base == nullptr) {
        throw std::bad_alloc();
    }
    auto* chunk = reinterpret_cast<Chunk*>(base);
    chunk->next = m_chunks;
    chunk->size = size;
    m_chunks = chunk;
    m_next = base + sizeof(Chunk);
    m_end = base + size;
    m_ready = base;
    m_chunkBytes += size;
    ++m_chunkCount;
    WatchForPointers(base, size);
    MarkUnusable(m_next, size - sizeof(Chunk));
}

void ZModelArena::PrefaultUpTo(char* end) noexcept {
    const auto offset = static_cast<std::size_t>(end - m_ready);
    const std::size_t step = (offset + kPrefaultStep - 1) / kPrefaultStep * kPrefaultStep;
    char* target = static_cast<std::size_t>(m_end - m_ready) < step ? m_end : m_ready + step;
    Platform::PrefaultPages(m_ready, static_cast<std::size_t>(target - m_ready));
    m_ready = target;
}

// A large block is written whole at once (a list moved to it): its pages are prefaulted too.
void* ZModelArena::AllocateLarge(std::size_t size) {
    if (size > std::numeric_limits<std::size_t>::max() - kSmallestChunk) {
        throw std::bad_alloc();
    }
    const std::size_t mapped = RoundUp(size, kSmallestChunk);
    void* block = Platform::MapPages(mapped);
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    Platform::PrefaultPages(block, size);
    m_largeBytes += mapped;
    WatchForPointers(block, mapped);
    return block;
}

}  // namespace Korvel
