#include "Options.h"

#include <cstdio>
#include <cstdlib>
#include <sstream>

namespace ZeKLBench {

void PrintUsage() {
    std::fprintf(
        stderr,
        "usage: zekl_bench [--sizes 1,10,100 | --quick] [--file DOC]... [--runs K] [--rounds R] [--seed S]\n"
        "                  [--dir DIR] [--keep] [--no-memory] [--only read|write|sax] [--cpu-time] "
        "[--warm-caches] [--check]\n"
        "  Generates documents of about the given sizes (1 MB = 1000000 bytes) into a temporary\n"
        "  directory (or DIR), or measures the given files instead. --quick means --sizes 1,10.\n"
        "  --cpu-time times with the process CPU time instead of steady_clock (busy machines).\n"
        "  Each timed run starts with cold CPU caches; --warm-caches leaves them as they are.\n"
        "  --rounds R spreads each document's K runs over R turns of all documents (default 3).\n"
        "  --check makes any FAIL give exit status 1.\n");
}

namespace {

bool ParseSizes(const std::string& text, std::vector<double>& sizes) {
    sizes.clear();
    std::stringstream in(text);
    std::string piece;
    while (std::getline(in, piece, ',')) {
        char* end = nullptr;
        const double value = std::strtod(piece.c_str(), &end);
        if (end == piece.c_str() || *end != 0 || value <= 0) {
            return false;
        }
        sizes.push_back(value);
    }
    return !sizes.empty();
}

}  // namespace

bool ParseOptions(int argc, char** argv, Options& options) {
    for (int i = 1; i < argc; ++i) {
        const std::string arg = argv[i];
        const bool hasValue = i + 1 < argc;
        if (arg == "--sizes" && hasValue) {
            if (!ParseSizes(argv[++i], options.sizesMb)) {
                return false;
            }
        } else if (arg == "--quick") {
            options.sizesMb = {1, 10};
        } else if (arg == "--file" && hasValue) {
            options.files.push_back(argv[++i]);
        } else if (arg == "--runs" && hasValue) {
            options.runs = std::atoi(argv[++i]);
            if (options.runs <= 0) {
                return false;
            }
        } else if (arg == "--rounds" && hasValue) {
            options.rounds = std::atoi(argv[++i]);
            if (options.rounds <= 0) {
                return false;
            }
        } else if (arg == "--seed" && hasValue) {
            options.seed = std::strtoull(argv[++i], nullptr, 0);
        } else if (arg == "--dir" && hasValue) {
            options.dir = argv[++i];
        } else if (arg == "--only" && hasValue) {
            options.only = argv[++i];
            if (options.only != "read" && options.only != "write" && options.only != "sax") {
                return false;
            }
            options.memory = false;
        } else if (arg == "--keep") {
            options.keep = true;
        } else if (arg == "--no-memory") {
            options.memory = false;
        } else if (arg == "--check") {
            options.check = true;
        } else if (arg == "--cpu-time") {
            options.cpuTime = true;
        } else if (arg == "--warm-caches") {
            options.coldCaches = false;
        } else {
            return false;
        }
    }
    return true;
}

}  // namespace ZeKLBench
