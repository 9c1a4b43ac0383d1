// Finds the messages whose constants may match some data without looking at every message:
// each request and positive response is filed under the bytes of its constant prefix (the
// leading bytes that its CONST parameters cover completely, at most 8), and a lookup tries
// each prefix length that occurs in the description, longest first.
#pragma once

#include "codec/CodecPlan.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <unordered_map>
#include <vector>

namespace Korvel {

class ZRecognitionIndex {
public:
    static constexpr uint32_t kMaxPrefix = 8;

    void Build(const CodecPlan& plan);

    // Calls `visit(messageIndex)` for every message whose constant prefix equals the data's
    // first bytes (messages without a whole constant first byte are always visited).
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
            const auto& bucket = buckets_[length];
            const auto found = bucket.find(key);
            if (found == bucket.end()) {
                continue;
            }
            for (uint32_t i = 0; i < found->second.count; ++i) {
                visit(members_[found->second.first + i]);
            }
        }
    }

    // The prefix length a message is filed under (for tests).
    static uint32_t PrefixLength(const CodecPlan& plan, const MessagePlan& message, uint64_t& key);

private:
    struct Range {
        uint32_t first = 0;
        uint32_t count = 0;
    };
    std::array<std::unordered_map<uint64_t, Range>, kMaxPrefix + 1> buckets_;
    std::vector<uint32_t> lengths_;  // prefix lengths in use, longest first
    std::vector<uint32_t> members_;  // message indexes, grouped by bucket
};

}  // namespace Korvel
