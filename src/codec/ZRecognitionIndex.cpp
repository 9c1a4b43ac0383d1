#include "codec/ZRecognitionIndex.h"

#include <algorithm>
#include <tuple>

namespace Korvel {

uint32_t ZRecognitionIndex::PrefixLength(const CodecPlan& plan, const MessagePlan& message, uint64_t& key) {
    // Room for a field that starts in the first 8 bytes and spans 9.
    uint8_t mask[kMaxPrefix + 9] = {};
    uint8_t value[kMaxPrefix + 9] = {};
    for (uint32_t i = 0; i < message.checkCount; ++i) {
        const ConstCheck& check = plan.checks[message.firstCheck + i];
        if (check.place.byteIndex >= kMaxPrefix) {
            continue;
        }
        if (check.wide) {
            const uint32_t count = std::min(check.place.byteCount, kMaxPrefix - check.place.byteIndex);
            for (uint32_t b = 0; b < count; ++b) {
                mask[check.place.byteIndex + b] = 0xFF;
                value[check.place.byteIndex + b] = plan.constBytes[check.bytesAt + b];
            }
            continue;
        }
        InsertBits(mask, check.place, ~uint64_t{0});
        InsertBits(value, check.place, check.expected);
    }
    uint32_t length = 0;
    key = 0;
    while (length < kMaxPrefix && length < message.length && mask[length] == 0xFF) {
        key = (key << 8) | value[length];
        ++length;
    }
    return length;
}

void ZRecognitionIndex::Build(const CodecPlan& plan) {
    // (prefix length, key, message) sorted, then cut into buckets of one flat member list.
    std::vector<std::tuple<uint32_t, uint64_t, uint32_t>> filed;
    for (uint32_t m = 0; m < plan.messages.size(); ++m) {
        const MessagePlan& message = plan.messages[m];
        // Negative responses are recognised by their shape; messages without constants would
        // match anything and are never recognised.
        if (message.kind == MessageKindNegResponse || message.constBits == 0) {
            continue;
        }
        uint64_t key = 0;
        const uint32_t length = PrefixLength(plan, message, key);
        filed.emplace_back(length, key, m);
    }
    std::sort(filed.begin(), filed.end());
    members_.reserve(filed.size());
    for (const auto& [length, key, message] : filed) {
        Range& range = buckets_[length][key];
        if (range.count == 0) {
            range.first = static_cast<uint32_t>(members_.size());
        }
        ++range.count;
        members_.push_back(message);
    }
    for (uint32_t length = kMaxPrefix + 1; length-- > 0;) {
        if (!buckets_[length].empty()) {
            lengths_.push_back(length);
        }
    }
}

}  // namespace Korvel
