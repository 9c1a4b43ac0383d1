// Finds the messages whose constants may match some data without looking at every message:
// each request and positive response is filed under the bytes of its constant prefix (the
// leading bytes that its CONST parameters cover completely, at most 8), and a lookup tries
// each prefix length that occurs in the description, longest first.
//
// One open-addressed table per prefix length holds the prefixes, and the candidates carry what
// their check needs, so that a lookup in a large description costs few cache misses. Prefixes
// are hashed under a key drawn once per process, so that a description cannot be written to
// make its prefixes collide.
#pragma once

#include "codec/CodecPlan.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace Korvel {

class ZRecognitionIndex {
public:
    static constexpr uint32_t kMaxPrefix = 8;

    // A message that may match, with what checking and naming it needs, so that a lookup
    // reads nothing else of the plan.
    struct Candidate {
        uint32_t message = 0;
        uint32_t firstCheck = 0;
        uint32_t checkCount = 0;
        uint32_t constBits = 0;
        uint32_t length = 0;
        uint32_t instance = 0;
        uint32_t kind = 0;
        // Every constant lies in the prefix: finding the prefix is the whole check.
        bool prefixIsAll = false;
        const char* instanceId = "";
    };

    void Build(const CodecPlan& plan);

    // Calls `visit(candidate)` for every message whose constant prefix equals the data's first
    // bytes (messages without a whole constant first byte are always visited).
    template <class Visit>
    void ForCandidates(const uint8_t* data, std::size_t size, Visit&& visit) const {
        for (uint32_t length : lengths_) {
            if (length > size) {
                continue;
            }
            uint64_t key = 0;
            for (uint32_t i = 0; i < length; ++i) {
                key = (key << 8) | data[i];
            }
            const Slot* slot = Find(length, key);
            if (slot == nullptr) {
                continue;
            }
            for (uint32_t i = 0; i < slot->count; ++i) {
                visit(members_[slot->first + i]);
            }
        }
    }

    // The prefix length a message is filed under, and its bytes as a number (for tests).
    static uint32_t PrefixLength(const CodecPlan& plan, const MessagePlan& message, uint64_t& key);

private:
    struct Slot {
        uint64_t key = 0;
        uint32_t first = 0;
        uint32_t count = 0;  // 0: an empty slot
    };

    uint64_t Mix(uint64_t key) const;
    const Slot* Find(uint32_t length, uint64_t key) const {
        const std::vector<Slot>& table = tables_[length];
        if (table.empty()) {
            return nullptr;
        }
        const std::size_t mask = table.size() - 1;
        for (std::size_t at = Mix(key) & mask;; at = (at + 1) & mask) {
            const Slot& slot = table[at];
            if (slot.count == 0) {
                return nullptr;
            }
            if (slot.key == key) {
                return &slot;
            }
        }
    }

    std::array<std::vector<Slot>, kMaxPrefix + 1> tables_;  // sizes are powers of two, half used at most
    std::vector<uint32_t> lengths_;                         // prefix lengths in use, longest first
    std::vector<Candidate> members_;                        // grouped by prefix
    uint64_t seed_ = 0;
};

}  // namespace Korvel
