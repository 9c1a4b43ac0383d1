// The measurements of one document: the floor (xerces-c's own parse with handlers that do
// nothing), the read and the write timed back to back with it, and the memory of a read in a
// child process of its own.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace ZeKLBench {

constexpr double kMB = 1e6;  // MB/s and document sizes use decimal megabytes

struct Options {
    std::vector<double> sizesMb{1, 10, 100};
    std::vector<std::string> files;
    int runs = 0;    // 0: chosen by size
    int rounds = 3;  // the runs of each document are spread over this many rounds
    uint64_t seed = 1;
    bool check = false;
    bool keep = false;
    bool memory = true;
    bool cpuTime = false;    // time with the process's CPU time instead of a steady clock
    bool coldCaches = true;  // every timed run starts with cold CPU caches
    std::string dir;
    std::string only;  // "", "read", "write" or "sax": one measurement only (for profilers)
};

struct Result {
    std::string name;
    uint64_t bytes = 0;
    int runs = 0;
    double sax = 0;  // seconds, best of runs
    double read = 0;
    double write = 0;
    double outSax = 0;  // floor of the document the write produced
    double destroy = 0;
    bool readOk = false;
    bool writeOk = false;
    bool identical = false;
    bool memoryOk = false;
    double peakOverDoc = 0;   // (VmHWM during the read - VmRSS before) / document size
    double modelOverDoc = 0;  // resident memory the loaded model holds / document size
    // read / floor of each run, the two timed back to back (the best of each above may come
    // from different moments).
    std::vector<double> pairRatios;
    // The floor's time per MB in each of those pairs, in seconds: the machine's speed of the
    // moment, by which the read's flatness is judged.
    std::vector<double> pairFloorsPerMB;
    // write / floor of each run (the floor of the document read, which the write reproduces).
    std::vector<double> writePairRatios;
};

// Enough runs that the best of them is likely to have had a quiet moment, and that the median
// of the read/floor pairs moves little with a single slow pair.
int DefaultRuns(uint64_t bytes);

// `runs` runs of the floor, the read and the write of one document, and its memory when the
// options ask for it.
Result Measure(const std::string& path, const std::string& name, const Options& options,
               const std::string& workDir, int runs);

// Folds the figures of a later round into the result: times keep the best run, a check holds
// only when it held in every round, memory comes from the round that measured it.
void Merge(Result& into, const Result& round);

// The body of the child process that MeasureMemory starts: prints "rssBeforeKb hwmKb modelKb ok".
int MemoryChild(const std::string& path);

}  // namespace ZeKLBench
