// zekl_docgen: writes a realistic diagnostic description document of a chosen size.
#include "DocGenerator.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

namespace {

void PrintUsage() {
    std::fprintf(stderr,
                 "usage: zekl_docgen --size-mb N -o FILE [--seed S]\n"
                 "  N may be fractional (1 MB = 1000000 bytes); the same N and S give the same bytes.\n");
}

bool ParseDouble(const char* text, double& out) {
    char* end = nullptr;
    out = std::strtod(text, &end);
    return end != text && *end == 0 && out > 0.0;
}

bool ParseU64(const char* text, uint64_t& out) {
    char* end = nullptr;
    out = std::strtoull(text, &end, 0);
    return end != text && *end == 0;
}

}  // namespace

int main(int argc, char** argv) {
    double sizeMb = 0.0;
    uint64_t seed = 1;
    std::string output;
    for (int i = 1; i < argc; ++i) {
        const std::string arg = argv[i];
        const bool hasValue = i + 1 < argc;
        if (arg == "--size-mb" && hasValue) {
            if (!ParseDouble(argv[++i], sizeMb)) {
                std::fprintf(stderr, "zekl_docgen: bad size '%s'\n", argv[i]);
                return 2;
            }
        } else if ((arg == "-o" || arg == "--output") && hasValue) {
            output = argv[++i];
        } else if (arg == "--seed" && hasValue) {
            if (!ParseU64(argv[++i], seed)) {
                std::fprintf(stderr, "zekl_docgen: bad seed '%s'\n", argv[i]);
                return 2;
            }
        } else if (arg == "-h" || arg == "--help") {
            PrintUsage();
            return 0;
        } else {
            std::fprintf(stderr, "zekl_docgen: unexpected argument '%s'\n", arg.c_str());
            PrintUsage();
            return 2;
        }
    }
    if (sizeMb <= 0.0 || output.empty()) {
        PrintUsage();
        return 2;
    }
    ZeKLBench::DocStats stats;
    std::string error;
    if (!ZeKLBench::GenerateDocument(output, static_cast<uint64_t>(sizeMb * 1e6), seed, stats, error)) {
        std::fprintf(stderr, "zekl_docgen: %s\n", error.c_str());
        return 1;
    }
    std::printf(
        "%s: %llu bytes, %llu instances, %llu parameters, %llu formula + %llu table conversions "
        "(%llu entries), %llu NRCs\n",
        output.c_str(), static_cast<unsigned long long>(stats.bytes),
        static_cast<unsigned long long>(stats.instances), static_cast<unsigned long long>(stats.parameters),
        static_cast<unsigned long long>(stats.formulaConversions),
        static_cast<unsigned long long>(stats.tableConversions),
        static_cast<unsigned long long>(stats.tableEntries), static_cast<unsigned long long>(stats.nrcs));
    return 0;
}
