// Generator of realistic diagnostic description documents of any size, in exactly the layout
// the ZeKL writer produces (UTF-8, "\n" line ends), so that a read followed by a write gives
// the same bytes back.
#pragma once

#include <cstdint>
#include <string>

namespace ZeKLBench {

struct DocStats {
    uint64_t bytes = 0;
    uint64_t instances = 0;
    uint64_t parameters = 0;
    uint64_t formulaConversions = 0;
    uint64_t tableConversions = 0;
    uint64_t tableEntries = 0;
    uint64_t nrcs = 0;
};

// Writes a document of at least targetBytes bytes (a little more: it ends after the instance
// or conversion that crosses the target) to path. The same seed and size give the same bytes
// on every platform. False (with a message in error) when the file cannot be written.
bool GenerateDocument(const std::string& path, uint64_t targetBytes, uint64_t seed, DocStats& stats,
                      std::string& error);

}  // namespace ZeKLBench
