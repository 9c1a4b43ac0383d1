// The memory of a model that a read builds.
//
// A read of a large document builds hundreds of thousands of small items: a parameter with its
// texts, a message's list and id index, an instance with its id. As heap blocks, each of their
// pages comes from the system one page fault at a time, and where faults are dear (some 10 us
// in a virtual machine) those faults cost more than the parse itself. A ZModelMemory takes
// large chunks straight from the system instead: prefaulted in steps, and with huge pages
// where the model is expected to fill them. It hands the chunks out block after block.
//
// Every model item and every list and text an item holds takes its memory through
// ModelAllocate. While a read builds a model, a Scope makes the model's memory the current one
// on the reading thread, and ModelAllocate draws on it. At any other time (items the caller
// builds or changes, copies, items of the factory) memory comes from the heap as before. Each
// block carries a small header that says where it came from, so ModelFree does the right thing
// with either.
//
// A block freed while its read is still building the model (a list that grew, a message that
// a later element replaced) is handed out again for the next block of its size. A block freed
// after the read stays until the model is destroyed: an item removed from a model that was
// read keeps its memory until then. So the chunks never hold more than the read built.
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <new>
#include <string>
#include <type_traits>
#include <vector>

namespace Korvel {

// Every block of model memory is aligned to this; model types need no more.
constexpr std::size_t kModelAlignment = 8;

class ZModelMemory {
public:
    // `expectedBytes`, what the model is expected to take, sizes the first chunks and decides
    // whether they get huge pages; 0 starts small.
    explicit ZModelMemory(std::size_t expectedBytes) noexcept;
    // Gives every chunk back to the system: the model's items must be gone.
    ~ZModelMemory();
    ZModelMemory(const ZModelMemory&) = delete;
    ZModelMemory& operator=(const ZModelMemory&) = delete;

    // A block of `size` bytes from the chunks, or null: blocks above kLargestBlock are left to
    // the heap, and so is everything once the system has no memory for another chunk.
    void* Allocate(std::size_t size) noexcept;
    // Takes back a block of this memory's newest chunk for reuse and returns true; false (and
    // nothing changes) for any other block. `size` is what the block was allocated with.
    bool Recycle(void* block, std::size_t size) noexcept;

    // Bytes taken from the system, and bytes handed out of them (block headers included; a
    // block handed out again counts once).
    std::size_t ChunkBytes() const { return m_chunkBytes; }
    std::size_t UsedBytes() const { return m_usedBytes; }
    std::size_t ChunkCount() const { return m_chunkCount; }

    // The largest block taken from a chunk. A model's larger blocks (the list of a container
    // of thousands of items) are few; from the heap they waste no chunk space when they grow.
    static constexpr std::size_t kLargestBlock = std::size_t{16} << 10;
    // The smallest chunk, also the step in which chunks of ordinary pages are prefaulted.
    static constexpr std::size_t kSmallChunk = std::size_t{64} << 10;
    // Freed blocks up to this size are reused (lists and texts of a message, messages).
    static constexpr std::size_t kLargestRecycled = 512;

    // Makes `memory` the memory that ModelAllocate draws on, on this thread, until the scope
    // ends; null puts the current one aside (for code of the caller that runs during a read).
    // Scopes nest: each restores the one before it.
    class Scope {
    public:
        explicit Scope(ZModelMemory* memory) noexcept;
        ~Scope();
        Scope(const Scope&) = delete;
        Scope& operator=(const Scope&) = delete;

    private:
        ZModelMemory* m_previous;
    };

    // The memory current on this thread, or null.
    static ZModelMemory* Current() noexcept;

private:
    struct Chunk;

    bool AddChunk() noexcept;
    void PrefaultUpTo(char* end) noexcept;

    struct FreeBlock;

    Chunk* m_chunks = nullptr;  // the newest first
    char* m_next = nullptr;     // the next free byte of the newest chunk
    char* m_end = nullptr;      // the end of the newest chunk
    char* m_ready = nullptr;    // prefaulted up to here
    std::size_t m_expectedBytes;
    std::size_t m_chunkBytes = 0;
    std::size_t m_usedBytes = 0;
    std::size_t m_chunkCount = 0;
    // Recycled blocks by size in steps of kModelAlignment, each list linked through its blocks.
    FreeBlock* m_free[kLargestRecycled / kModelAlignment + 1] = {};
};

// A block for a model item or for what an item holds: from the current model memory when there
// is one and it has room, else from the heap. Throws std::bad_alloc when there is no memory.
void* ModelAllocate(std::size_t size);
// Frees a block of ModelAllocate (null is ignored): a heap block goes back to the heap, a
// chunk's block stays with its model memory.
void ModelFree(void* block) noexcept;

// A standard allocator on ModelAllocate, for the lists and texts that model items hold.
template <typename T>
class ZModelAllocator {
public:
    using value_type = T;
    using is_always_equal = std::true_type;

    ZModelAllocator() noexcept = default;
    template <typename U>
    ZModelAllocator(const ZModelAllocator<U>& /*other*/) noexcept {}

    T* allocate(std::size_t count) {
        static_assert(alignof(T) <= kModelAlignment, "model memory is aligned to 8 bytes only");
        if (count > std::numeric_limits<std::size_t>::max() / sizeof(T)) {
            throw std::bad_array_new_length();
        }
        return static_cast<T*>(ModelAllocate(count * sizeof(T)));
    }
    void deallocate(T* block, std::size_t /*count*/) noexcept { ModelFree(block); }

    template <typename U>
    bool operator==(const ZModelAllocator<U>& /*other*/) const noexcept {
        return true;
    }
    template <typename U>
    bool operator!=(const ZModelAllocator<U>& /*other*/) const noexcept {
        return false;
    }
};

// Frees a block of ModelAllocate, for owning pointers to raw blocks.
struct ZModelDeleter {
    void operator()(void* block) const noexcept { ModelFree(block); }
};

template <typename T>
using ZModelVector = std::vector<T, ZModelAllocator<T>>;
using ZModelString = std::basic_string<char, std::char_traits<char>, ZModelAllocator<char>>;

}  // namespace Korvel
