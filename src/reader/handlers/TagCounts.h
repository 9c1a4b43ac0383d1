// Open and close counts of the nine tags of the document, shared by all handlers of a
// parse; each handler touches only the pair of its own tag.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace Korvel {

enum class KLTag : std::size_t {
    Ecu,
    NegativeResponseCodes,
    Map,
    Instance,
    Request,
    Response,
    NegativeResponse,
    Conversion,
    Parameter,
};

struct TagCounts {
    struct Pair {
        uint32_t open = 0;
        uint32_t close = 0;
    };

    static constexpr std::size_t kTagCount = 9;

    Pair& operator[](KLTag tag) { return pairs[static_cast<std::size_t>(tag)]; }
    const Pair& operator[](KLTag tag) const { return pairs[static_cast<std::size_t>(tag)]; }
    void Reset() { pairs = {}; }

    std::array<Pair, kTagCount> pairs{};
};

}  // namespace Korvel
