// The memory of a model that a read builds.
//
// A read of a large document builds hundreds of thousands of small items: a parameter with its
// texts, a message's list and id index, an instance with its id. The ECU that a read returns
// owns one ZModelArena, and the reader's model builder hands it explicitly to every item and
// list it makes (model/ZModelBuilder.h): blocks are cut one after the other from chunks that
// the arena takes from the system (platform/PageMemory.h, whose build-time policy decides on
// prefaulting), and destroying the ECU gives the chunks back at once.
//
// Nothing is ambient: a block belongs to the arena because its owner was given the arena.
// Lists hold it in their allocator (ZModelAllocator), items in their own arena pointer
// (ZModelItem). Items the caller builds, and every copy, use the heap.
//
// A small block given back (a list that grew) serves the next block of its size. Other memory
// stays until the ECU goes: an item removed from a model that was read keeps its memory until
// then.
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <new>
#include <string>
#include <type_traits>
#include <vector>

namespace Korvel {

// Every block of an arena is aligned to this; model types need no more.
constexpr std::size_t kModelAlignment = 8;

class ZModelArena {
public:
    // `expectedBytes`, what the model is expected to take, sizes the first chunks; 0 starts
    // with a single page.
    explicit ZModelArena(std::size_t expectedBytes = 0) noexcept;
    // Gives every chunk and large block back to the system: the model's items must be gone.
    ~ZModelArena();
    ZModelArena(const ZModelArena&) = delete;
    ZModelArena& operator=(const ZModelArena&) = delete;

    // What the model is expected to take; sizes the chunks taken from now on.
    void ExpectBytes(std::size_t expectedBytes) noexcept { m_expectedBytes = expectedBytes; }

    // A block of `size` bytes aligned to kModelAlignment, for a list. Blocks above
    // kLargestBlock are mappings of their own. Throws std::bad_alloc when the system has no
    // memory.
    void* Allocate(std::size_t size);
    // Gives back a block of Allocate; `size` is what it was allocated with. Small blocks are
    // kept for reuse, large ones go back to the system, others stay until the arena goes.
    void Deallocate(void* block, std::size_t size) noexcept;

    // A block of `size` bytes for an item, always cut from a chunk (however large), so that
    // it can be given back with a size it is known to have at least.
    void* AllocateItem(std::size_t size);
    // Gives back a block of AllocateItem of at least `size` bytes: a small one is kept for
    // reuse, others stay until the arena goes.
    void ReleaseItem(void* block, std::size_t size) noexcept;

    // Called by the owner before its items go with the arena: from then on blocks given back
    // are not kept for reuse (nothing will be made any more), which spares the teardown a
    // write into every block.
    void BeginTeardown() noexcept { m_tearingDown = true; }
    bool TearingDown() const noexcept { return m_tearingDown; }

    // Bytes taken from the system for chunks, and bytes handed out of them (a block handed out
    // again counts once).
    std::size_t ChunkBytes() const { return m_chunkBytes; }
    std::size_t UsedBytes() const { return m_usedBytes; }
    std::size_t ChunkCount() const { return m_chunkCount; }
    // Bytes of the large blocks currently held.
    std::size_t LargeBytes() const { return m_largeBytes; }

    // The largest block cut from a chunk. A model's larger blocks (the list of a container of
    // thousands of items) are few; as mappings of their own they waste no chunk space.
    static constexpr std::size_t kLargestBlock = std::size_t{16} << 10;
    // Chunks are whole pages, from one page up to 2 MB. Their pages are prefaulted (where
    // the build's policy says so) in steps of kPrefaultStep as blocks reach them: one system
    // call for many page faults, and never many pages that no block uses.
    static constexpr std::size_t kPrefaultStep = std::size_t{64} << 10;
    static constexpr std::size_t kSmallestChunk = std::size_t{4} << 10;
    static constexpr std::size_t kLargestChunk = std::size_t{2} << 20;
    // Blocks given back up to this size are reused (lists and texts of a message).
    static constexpr std::size_t kLargestRecycled = 512;

private:
    struct Chunk;
    struct FreeBlock;

    void AddChunk(std::size_t need);
    void PrefaultUpTo(char* end) noexcept;
    void* AllocateLarge(std::size_t size);
    void* AllocateInChunk(std::size_t size);
    void ReleaseInChunk(void* block, std::size_t size) noexcept;

    Chunk* m_chunks = nullptr;  // the newest first
    char* m_next = nullptr;     // the next free byte of the newest chunk
    char* m_end = nullptr;      // the end of the newest chunk
    char* m_ready = nullptr;    // prefaulted up to here
    std::size_t m_expectedBytes;
    std::size_t m_chunkBytes = 0;
    std::size_t m_usedBytes = 0;
    std::size_t m_chunkCount = 0;
    std::size_t m_largeBytes = 0;
    bool m_tearingDown = false;
    // Blocks given back, by size in steps of kModelAlignment, each list linked through its
    // blocks.
    FreeBlock* m_free[kLargestRecycled / kModelAlignment + 1] = {};
};

// A standard allocator on an arena, for the lists and texts that model items hold: with an
// arena its blocks come from there, without one (null) from the heap. Two allocators are equal
// when they draw on the same arena. A container copied from another starts on the heap, as
// every copy does.
template <typename T>
class ZModelAllocator {
public:
    using value_type = T;
    using is_always_equal = std::false_type;
    using propagate_on_container_copy_assignment = std::false_type;
    using propagate_on_container_move_assignment = std::true_type;
    using propagate_on_container_swap = std::true_type;

    ZModelAllocator() noexcept = default;
    explicit ZModelAllocator(ZModelArena* arena) noexcept : m_arena(arena) {}
    template <typename U>
    ZModelAllocator(const ZModelAllocator<U>& other) noexcept : m_arena(other.Arena()) {}

    T* allocate(std::size_t count) {
        static_assert(alignof(T) <= kModelAlignment, "model memory is aligned to 8 bytes only");
        if (count > std::numeric_limits<std::size_t>::max() / sizeof(T)) {
            throw std::bad_array_new_length();
        }
        const std::size_t bytes = count * sizeof(T);
        return static_cast<T*>(m_arena != nullptr ? m_arena->Allocate(bytes) : ::operator new(bytes));
    }
    void deallocate(T* block, std::size_t count) noexcept {
        if (m_arena != nullptr) {
            m_arena->Deallocate(block, count * sizeof(T));
        } else {
            ::operator delete(block);
        }
    }

    ZModelAllocator select_on_container_copy_construction() const noexcept { return ZModelAllocator(); }

    ZModelArena* Arena() const noexcept { return m_arena; }

    template <typename U>
    bool operator==(const ZModelAllocator<U>& other) const noexcept {
        return m_arena == other.Arena();
    }
    template <typename U>
    bool operator!=(const ZModelAllocator<U>& other) const noexcept {
        return m_arena != other.Arena();
    }

private:
    ZModelArena* m_arena = nullptr;
};

template <typename T>
using ZModelVector = std::vector<T, ZModelAllocator<T>>;
using ZModelString = std::basic_string<char, std::char_traits<char>, ZModelAllocator<char>>;

}  // namespace Korvel
