#include "codec/ZRecognitionIndex.h"

#include "codec/MessageDecoder.h"

#include <algorithm>
#include <random>
#include <tuple>

namespace Korvel {

namespace {

// Drawn once per process: the prefixes' hash depends on it, so their places in the tables
// cannot be foreseen from a description.
uint64_t ProcessSeed() {
    static const uint64_t seed = [] {
        std::random_device device;
        return (static_cast<uint64_t>(device()) << 32) ^ device();
    }();
    return seed;
}

// True when every constant of the message lies in the prefix and the prefix satisfies them all
// (constants that overlap with different values satisfy no data, prefix or not).
bool PrefixIsAll(const CodecPlan& plan, const MessagePlan& message, uint32_t length, uint64_t key) {
    for (uint32_t i = 0; i < message.checkCount; ++i) {
        const ConstCheck& check = plan.checks[message.firstCheck + i];
        if (check.endByte > length) {
            return false;
        }
    }
    uint8_t prefix[ZRecognitionIndex::kMaxPrefix] = {};
    for (uint32_t i = 0; i < length; ++i) {
        prefix[i] = static_cast<uint8_t>(key >> (8 * (length - 1 - i)));
    }
    return ConstantsMatch(plan, message.firstCheck, message.checkCount, prefix, length);
}

}  // namespace

uint64_t ZRecognitionIndex::Mix(uint64_t key) const {
    // The finaliser of splitmix64: every bit of the key reaches every bit of the result.
    uint64_t z = key ^ seed_;
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ull;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBull;
    return z ^ (z >> 31);
}

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
    seed_ = ProcessSeed();
    // (prefix length, key, message) sorted, then cut into groups of one flat member list.
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
    std::array<std::size_t, kMaxPrefix + 1> keys{};
    for (std::size_t i = 0; i < filed.size(); ++i) {
        if (i == 0 || std::get<0>(filed[i]) != std::get<0>(filed[i - 1]) ||
            std::get<1>(filed[i]) != std::get<1>(filed[i - 1])) {
            ++keys[std::get<0>(filed[i])];
        }
    }
    for (uint32_t length = 0; length <= kMaxPrefix; ++length) {
        if (keys[length] == 0) {
            continue;
        }
        std::size_t size = 4;
        while (size < 2 * keys[length]) {
            size *= 2;
        }
        tables_[length].assign(size, Slot());
    }
    members_.reserve(filed.size());
    Slot* group = nullptr;
    for (std::size_t i = 0; i < filed.size(); ++i) {
        const auto& [length, key, m] = filed[i];
        const bool newGroup =
            i == 0 || length != std::get<0>(filed[i - 1]) || key != std::get<1>(filed[i - 1]);
        if (newGroup) {
            std::vector<Slot>& table = tables_[length];
            const std::size_t mask = table.size() - 1;
            std::size_t at = Mix(key) & mask;
            while (table[at].count != 0) {
                at = (at + 1) & mask;
            }
            group = &table[at];
            group->key = key;
            group->first = static_cast<uint32_t>(members_.size());
        }
        const MessagePlan& message = plan.messages[m];
        Candidate candidate;
        candidate.message = m;
        candidate.firstCheck = message.firstCheck;
        candidate.checkCount = message.checkCount;
        candidate.constBits = message.constBits;
        candidate.length = message.length;
        candidate.instance = message.instance;
        candidate.kind = message.kind;
        candidate.instanceId = plan.instances[message.instance].id;
        candidate.prefixIsAll = PrefixIsAll(plan, message, length, key);
        members_.push_back(candidate);
        ++group->count;
    }
    for (uint32_t length = kMaxPrefix + 1; length-- > 0;) {
        if (!tables_[length].empty()) {
            lengths_.push_back(length);
        }
    }
}

}  // namespace Korvel
