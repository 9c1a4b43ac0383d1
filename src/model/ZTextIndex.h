// Maps text keys to item positions for the containers whose key order nobody reads
// (parameters of a message, instances, conversions). A large document holds hundreds of
// thousands of parameters; an ordered map spends a heap node of some 80 bytes on each key,
// while this table keeps every key in one slot array and one block of key bytes.
//
// Open addressing with linear probing. Keys are hashed with SipHash-1-3 under a key drawn once
// per process, so that a document cannot be written to make its ids collide and turn each
// insertion into a walk over the whole table.
#pragma once

#include "model/ZModelArena.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace Korvel {

class ZTextIndex {
public:
    // Where a key is, or where it would go; valid until the index next changes.
    struct Probe {
        uint32_t tag;
        std::size_t at;
        bool found;
    };

    // With an arena, the slots and key bytes are kept there.
    explicit ZTextIndex(ZModelArena* arena = nullptr)
        : m_slots(ZModelAllocator<Slot>(arena)), m_keys(ZModelAllocator<char>(arena)) {}
    ZTextIndex(const ZTextIndex&) = delete;
    ZTextIndex& operator=(const ZTextIndex&) = delete;
    ~ZTextIndex() = default;

    Probe Search(std::string_view key) const;
    // Maps a key that a Search just did not find.
    void InsertAt(const Probe& probe, std::string_view key, uint32_t position);

    // The position mapped to the key, or null.
    const uint32_t* Find(std::string_view key) const;
    // Maps a new key; false (and nothing changes) when the key is already mapped.
    bool Insert(std::string_view key, uint32_t position);
    // Maps the key, replacing the position of a key already mapped.
    void Assign(std::string_view key, uint32_t position);
    // False when the key was not mapped.
    bool Erase(std::string_view key);
    void Clear();
    void Swap(ZTextIndex& other) noexcept;

    // The key mapped to a position, found by a walk over the table; `key` is untouched when
    // no key maps there.
    bool KeyOf(uint32_t position, std::string& key) const;
    std::size_t Size() const { return m_used; }
    std::size_t SlotCount() const { return m_slots.size(); }
    // Bytes held for keys, erased keys' bytes included until they are dropped.
    std::size_t KeyBytes() const { return m_keys.size(); }
    bool IsHashed() const { return m_hashed; }
    // The arena of the slots and key bytes; null when they are on the heap.
    ZModelArena* Arena() const { return m_slots.get_allocator().Arena(); }

    // The hash of a text (exposed for tests).
    static uint32_t Hash(std::string_view key);

    // Most messages hold a handful of parameters, few more than a dozen: up to this many keys
    // are kept in a plain list and compared directly, with no hash to compute. Up to this size
    // a scan of the list costs less than hashing every key and building the table.
    static constexpr std::size_t kListLimit = 16;

private:
    // The list's first room: enough for a typical message in one allocation.
    static constexpr std::size_t kFirstRoom = 8;
    // In the table, a slot is empty or erased by its tag; any other tag is the key's hash.
    enum : uint32_t { kEmpty = 0, kErased = 1 };
    struct Slot {
        uint32_t tag;
        uint32_t keyAt;
        uint32_t keyLength;
        uint32_t position;
    };

    std::string_view KeyAt(const Slot& slot) const { return {m_keys.data() + slot.keyAt, slot.keyLength}; }
    Probe SearchList(std::string_view key) const;
    Probe SearchTable(std::string_view key, uint32_t tag) const;
    // Makes room in the table for one more key: grows it, or rebuilds it at its size to drop
    // erased slots and the bytes of erased keys. True when the slots were rebuilt.
    bool ReserveTable();
    // Turns the list or table into a table of `capacity` slots holding only live keys.
    void Rebuild(std::size_t capacity);
    // Drops the bytes of erased keys from the list.
    void CompactList();
    bool TooManyDeadKeyBytes() const;
    uint32_t StoreKey(std::string_view key);

    // The list (m_used slots, in no order) or the table (a power of two of slots).
    ZModelVector<Slot> m_slots;
    ZModelString m_keys;  // key bytes back to back, without terminators
    std::size_t m_used = 0;
    std::size_t m_erased = 0;        // erased slots of the table
    std::size_t m_deadKeyBytes = 0;  // bytes of erased keys still in m_keys
    bool m_hashed = false;
};

}  // namespace Korvel
