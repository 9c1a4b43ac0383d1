#include "model/ZTextIndex.h"

#include <chrono>
#include <cstring>
#include <random>
#include <stdexcept>
#include <utility>

namespace Korvel {

namespace {

// Bytes of erased keys tolerated before a rebuild drops them, beyond half of all key bytes.
constexpr std::size_t kDeadKeyBytes = 256;

struct SipKey {
    uint64_t k0;
    uint64_t k1;
};

// Drawn once per process. Where the system has no random device, the clock and an address
// still differ from run to run.
SipKey DrawKey() {
    SipKey key{0x0706050403020100ULL, 0x0f0e0d0c0b0a0908ULL};
    try {
        std::random_device device;
        key.k0 = (static_cast<uint64_t>(device()) << 32) ^ device();
        key.k1 = (static_cast<uint64_t>(device()) << 32) ^ device();
    } catch (...) {
        static const int anchor = 0;
        key.k0 ^= static_cast<uint64_t>(std::chrono::steady_clock::now().time_since_epoch().count());
        key.k1 ^= static_cast<uint64_t>(reinterpret_cast<std::uintptr_t>(&anchor));
    }
    return key;
}

const SipKey& ProcessKey() {
    static const SipKey key = DrawKey();
    return key;
}

inline uint64_t Rotl(uint64_t value, int bits) {
    return (value << bits) | (value >> (64 - bits));
}

inline void SipRound(uint64_t& v0, uint64_t& v1, uint64_t& v2, uint64_t& v3) {
    v0 += v1;
    v1 = Rotl(v1, 13);
    v1 ^= v0;
    v0 = Rotl(v0, 32);
    v2 += v3;
    v3 = Rotl(v3, 16);
    v3 ^= v2;
    v0 += v3;
    v3 = Rotl(v3, 21);
    v3 ^= v0;
    v2 += v1;
    v1 = Rotl(v1, 17);
    v1 ^= v2;
    v2 = Rotl(v2, 32);
}

// The hash is only ever compared within one process, so the host's byte order will do.
inline uint64_t LoadWord(const unsigned char* bytes, std::size_t count) {
    uint64_t value = 0;
    std::memcpy(&value, bytes, count);
    return value;
}

// SipHash-1-3: one compression round per word, three finalisation rounds.
uint64_t SipHash13(const SipKey& key, std::string_view text) {
    uint64_t v0 = key.k0 ^ 0x736f6d6570736575ULL;
    uint64_t v1 = key.k1 ^ 0x646f72616e646f6dULL;
    uint64_t v2 = key.k0 ^ 0x6c7967656e657261ULL;
    uint64_t v3 = key.k1 ^ 0x7465646279746573ULL;
    const auto* bytes = reinterpret_cast<const unsigned char*>(text.data());
    const std::size_t length = text.size();
    const std::size_t whole = length & ~static_cast<std::size_t>(7);
    for (std::size_t at = 0; at < whole; at += 8) {
        const uint64_t word = LoadWord(bytes + at, 8);
        v3 ^= word;
        SipRound(v0, v1, v2, v3);
        v0 ^= word;
    }
    const uint64_t last = (static_cast<uint64_t>(length) << 56) | LoadWord(bytes + whole, length - whole);
    v3 ^= last;
    SipRound(v0, v1, v2, v3);
    v0 ^= last;
    v2 ^= 0xff;
    SipRound(v0, v1, v2, v3);
    SipRound(v0, v1, v2, v3);
    SipRound(v0, v1, v2, v3);
    return v0 ^ v1 ^ v2 ^ v3;
}

}  // namespace

uint32_t ZTextIndex::Hash(std::string_view key) {
    const uint64_t hash = SipHash13(ProcessKey(), key);
    const auto tag = static_cast<uint32_t>(hash ^ (hash >> 32));
    return tag > kErased ? tag : tag + 2;
}

ZTextIndex::Probe ZTextIndex::SearchList(std::string_view key) const {
    for (std::size_t at = 0; at < m_used; ++at) {
        const Slot& slot = m_slots[at];
        if (slot.keyLength == key.size() && KeyAt(slot) == key) {
            return Probe{0, at, true};
        }
    }
    return Probe{0, m_used, false};
}

// Linear probing; a new key goes to the first erased slot met on the way, else to the empty
// slot that ended the search.
ZTextIndex::Probe ZTextIndex::SearchTable(std::string_view key, uint32_t tag) const {
    const std::size_t mask = m_slots.size() - 1;
    std::size_t free = m_slots.size();
    for (std::size_t at = tag & mask;; at = (at + 1) & mask) {
        const Slot& slot = m_slots[at];
        if (slot.tag == kEmpty) {
            return Probe{tag, free != m_slots.size() ? free : at, false};
        }
        if (slot.tag == kErased) {
            if (free == m_slots.size()) {
                free = at;
            }
        } else if (slot.tag == tag && KeyAt(slot) == key) {
            return Probe{tag, at, true};
        }
    }
}

ZTextIndex::Probe ZTextIndex::Search(std::string_view key) const {
    return m_hashed ? SearchTable(key, Hash(key)) : SearchList(key);
}

void ZTextIndex::InsertAt(const Probe& probe, std::string_view key, uint32_t position) {
    if (!m_hashed && m_used < kListLimit) {
        if (TooManyDeadKeyBytes()) {
            CompactList();
        }
        if (m_slots.capacity() == 0) {
            m_slots.reserve(kFirstRoom);
            // Room for the keys of a typical message: one allocation instead of a few.
            m_keys.reserve(kFirstRoom * 8);
        }
        const Slot slot{0, StoreKey(key), static_cast<uint32_t>(key.size()), position};
        m_slots.push_back(slot);
        ++m_used;
        return;
    }
    // A rebuilt table puts the key elsewhere; in a table the probe already holds its hash.
    Probe at = probe;
    if (!m_hashed) {
        Rebuild(kListLimit * 4);
        at = SearchTable(key, Hash(key));
    } else if (ReserveTable()) {
        at = SearchTable(key, probe.tag);
    }
    Slot& slot = m_slots[at.at];
    const uint32_t keyAt = StoreKey(key);
    if (slot.tag == kErased) {
        --m_erased;
    }
    slot = Slot{at.tag, keyAt, static_cast<uint32_t>(key.size()), position};
    ++m_used;
}

const uint32_t* ZTextIndex::Find(std::string_view key) const {
    if (m_used == 0) {
        return nullptr;
    }
    const Probe probe = Search(key);
    return probe.found ? &m_slots[probe.at].position : nullptr;
}

bool ZTextIndex::Insert(std::string_view key, uint32_t position) {
    const Probe probe = Search(key);
    if (probe.found) {
        return false;
    }
    InsertAt(probe, key, position);
    return true;
}

void ZTextIndex::Assign(std::string_view key, uint32_t position) {
    const Probe probe = Search(key);
    if (probe.found) {
        m_slots[probe.at].position = position;
    } else {
        InsertAt(probe, key, position);
    }
}

bool ZTextIndex::Erase(std::string_view key) {
    if (m_used == 0) {
        return false;
    }
    const Probe probe = Search(key);
    if (!probe.found) {
        return false;
    }
    m_deadKeyBytes += m_slots[probe.at].keyLength;
    --m_used;
    if (m_hashed) {
        m_slots[probe.at].tag = kErased;
        ++m_erased;
    } else {
        m_slots[probe.at] = m_slots[m_used];
        m_slots.pop_back();
    }
    return true;
}

void ZTextIndex::Clear() {
    ZTextIndex empty(Arena());
    Swap(empty);
}

void ZTextIndex::Swap(ZTextIndex& other) noexcept {
    m_slots.swap(other.m_slots);
    m_keys.swap(other.m_keys);
    std::swap(m_used, other.m_used);
    std::swap(m_erased, other.m_erased);
    std::swap(m_deadKeyBytes, other.m_deadKeyBytes);
    std::swap(m_hashed, other.m_hashed);
}

bool ZTextIndex::KeyOf(uint32_t position, std::string& key) const {
    for (const Slot& slot : m_slots) {
        const bool live = m_hashed ? slot.tag > kErased : true;
        if (live && slot.position == position) {
            key.assign(KeyAt(slot));
            return true;
        }
    }
    return false;
}

// An erased key's bytes stay behind until a rebuild; they are counted so that erasing and
// adding keys cannot grow the block for ever.
bool ZTextIndex::TooManyDeadKeyBytes() const {
    return m_deadKeyBytes > kDeadKeyBytes + m_keys.size() / 2;
}

// At most three quarters of the slots are taken (mapped or erased), so a search ends soon.
bool ZTextIndex::ReserveTable() {
    const std::size_t capacity = m_slots.size();
    const bool slotsFree = (m_used + m_erased + 1) * 4 <= capacity * 3;
    if (slotsFree && !TooManyDeadKeyBytes()) {
        return false;
    }
    std::size_t wanted = capacity;
    while ((m_used + 1) * 2 > wanted) {
        wanted *= 2;
    }
    Rebuild(wanted);
    return true;
}

void ZTextIndex::Rebuild(std::size_t capacity) {
    std::size_t keyBytes = 0;
    for (const Slot& slot : m_slots) {
        if (!m_hashed || slot.tag > kErased) {
            keyBytes += slot.keyLength;
        }
    }
    ZTextIndex built(Arena());
    built.m_hashed = true;
    built.m_slots.assign(capacity, Slot{kEmpty, 0, 0, 0});
    built.m_keys.reserve(keyBytes * 2);
    const std::size_t mask = capacity - 1;
    for (const Slot& slot : m_slots) {
        if (m_hashed && slot.tag <= kErased) {
            continue;
        }
        const std::string_view key = KeyAt(slot);
        const uint32_t tag = m_hashed ? slot.tag : Hash(key);
        std::size_t at = tag & mask;
        while (built.m_slots[at].tag != kEmpty) {
            at = (at + 1) & mask;
        }
        built.m_slots[at] = Slot{tag, built.StoreKey(key), slot.keyLength, slot.position};
    }
    built.m_used = m_used;
    Swap(built);
}

void ZTextIndex::CompactList() {
    ZModelString keys(m_keys.get_allocator());
    keys.reserve(m_keys.size() - m_deadKeyBytes);
    for (Slot& slot : m_slots) {
        const auto at = static_cast<uint32_t>(keys.size());
        keys.append(KeyAt(slot));
        slot.keyAt = at;
    }
    m_keys.swap(keys);
    m_deadKeyBytes = 0;
}

uint32_t ZTextIndex::StoreKey(std::string_view key) {
    if (key.size() > UINT32_MAX - m_keys.size()) {
        throw std::length_error("keys of one container exceed 4 GiB");
    }
    const auto at = static_cast<uint32_t>(m_keys.size());
    m_keys.append(key);
    return at;
}

}  // namespace Korvel
