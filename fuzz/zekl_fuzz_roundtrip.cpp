// Whatever the reader accepts and the format can carry, the writer writes; the document reads
// again, and after one round of reading and writing it no longer changes.
#include "RoundTrip.h"

#include <cstdio>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace Korvel::HostileTest;
    if (size > 0xFFFFFFFFu) {
        return 0;
    }
    const RoundTripResult result =
        CheckRoundTrip(reinterpret_cast<const char*>(data), static_cast<uint32_t>(size), "utf-8");
    switch (result.outcome) {
        case RoundTripOutcome::NotRead:
        case RoundTripOutcome::NotWritable:
        case RoundTripOutcome::Stable:
            return 0;
        default:
            std::fprintf(stderr, "round trip %s\n--- second ---\n%s\n--- third ---\n%s\n",
                         OutcomeName(result.outcome), result.second.c_str(), result.third.c_str());
            std::abort();
    }
}
