// zekl_bench: read and write speed of ZeKL against the floor of the XML parser itself, and the
// memory of a loaded model, on generated documents of about 1, 10 and 100 MB.
//
// Every time is the best of K runs timed with steady_clock (or CPU time); the read's ratio to the
// floor is the median over runs that time the two back to back. The floor is xerces-c's
// SAXParser with library defaults and an empty HandlerBase on a LocalFileInputSource, which
// any read through the SAX interface pays. Memory is measured in a fresh child process per
// document so that earlier sizes leave nothing behind (see MeasureMemory).
#include "DocGenerator.h"

#include <ZeKL/ZeKL.h>

#include <xercesc/framework/LocalFileInputSource.hpp>
#include <xercesc/parsers/SAXParser.hpp>
#include <xercesc/sax/HandlerBase.hpp>
#include <xercesc/sax/SAXParseException.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLString.hpp>

#include <malloc.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fstream>
#include <limits>
#include <sstream>
#include <string>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

// With --cpu-time the timed sections use the process's CPU time instead of steady_clock: on a
// machine shared with other work, time spent waiting for a core then does not count.
bool gCpuTime = false;

// Every timed run starts with cold CPU caches, as a read or a write in an application does:
// it comes after other work. Without this, the runs of a small document after the first find
// its model and its text in the caches and those of a large one do not, so time per MB would
// compare a cache against main memory. --warm-caches turns it off.
bool gColdCaches = true;
// Where ColdCaches leaves its sum, so that the compiler keeps the loop.
volatile unsigned char gCacheSink = 0;

// Writes over a buffer twice the size of the last-level cache, a line at a time (a large memset
// may bypass the cache).
void ColdCaches() {
    if (!gColdCaches) {
        return;
    }
    static const std::size_t size = [] {
        long cache = sysconf(_SC_LEVEL3_CACHE_SIZE);
        if (cache <= 0) {
            cache = sysconf(_SC_LEVEL2_CACHE_SIZE);
        }
        const std::size_t twice = cache > 0 ? 2 * static_cast<std::size_t>(cache) : 0;
        return std::clamp<std::size_t>(twice, std::size_t{64} << 20, std::size_t{512} << 20);
    }();
    static std::vector<unsigned char> buffer(size, 1);
    unsigned char sum = 0;
    for (std::size_t at = 0; at < buffer.size(); at += 64) {
        buffer[at] = static_cast<unsigned char>(buffer[at] + 1);
        sum = static_cast<unsigned char>(sum + buffer[at]);
    }
    gCacheSink = sum;
}

double Now() {
    if (gCpuTime) {
        timespec ts{};
        clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &ts);
        return static_cast<double>(ts.tv_sec) + static_cast<double>(ts.tv_nsec) * 1e-9;
    }
    return std::chrono::duration<double>(Clock::now().time_since_epoch()).count();
}
constexpr double kMB = 1e6;  // MB/s and document sizes use decimal megabytes

// Targets.
constexpr double kReadOverFloorMax = 1.5;
constexpr double kWriteOverFloorMax = 0.5;
constexpr double kWriteMBsMin = 130.0;
constexpr double kPeakOverDocMax = 3.0;
constexpr double kFlatnessMax = 1.2;

struct Options {
    std::vector<double> sizesMb{1, 10, 100};
    std::vector<std::string> files;
    int runs = 0;    // 0: chosen by size
    int rounds = 3;  // the runs of each document are spread over this many rounds
    uint64_t seed = 1;
    bool check = false;
    bool keep = false;
    bool memory = true;
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

double Seconds(Clock::duration d) {
    return std::chrono::duration<double>(d).count();
}

double MBs(uint64_t bytes, double seconds) {
    return seconds > 0 ? static_cast<double>(bytes) / kMB / seconds : 0.0;
}

// The middle value, or the mean of the two middle values of an even count (the 100 MB
// document has six runs); `values` must not be empty.
double Median(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    if (values.size() % 2 != 0) {
        return *middle;
    }
    // The lower middle is the largest value below the upper one.
    return (*std::max_element(values.begin(), middle) + *middle) / 2;
}

bool ReadWholeFile(const std::string& path, std::string& out) {
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        return false;
    }
    std::ostringstream buffer;
    buffer << in.rdbuf();
    out = buffer.str();
    return true;
}

bool WriteWholeFile(const std::string& path, const std::string& text) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out.write(text.data(), static_cast<std::streamsize>(text.size()));
    return static_cast<bool>(out);
}

uint64_t FileSize(const std::string& path) {
    struct stat st {};
    return stat(path.c_str(), &st) == 0 ? static_cast<uint64_t>(st.st_size) : 0;
}

// The floor: parse with library defaults and handlers that do nothing.
bool SaxParse(const std::string& path, double& seconds) {
    using namespace xercesc;
    ColdCaches();
    const double start = Now();
    bool ok = true;
    {
        XMLCh* widePath = XMLString::transcode(path.c_str());
        LocalFileInputSource source(widePath);
        XMLString::release(&widePath);
        SAXParser parser;
        HandlerBase handler;
        parser.setDocumentHandler(&handler);
        parser.setErrorHandler(&handler);
        try {
            parser.parse(source);
        } catch (const SAXParseException&) {
            ok = false;
        } catch (const XMLException&) {
            ok = false;
        }
    }
    seconds = Now() - start;
    return ok;
}

double BestSax(const std::string& path, int runs, bool& ok) {
    double best = std::numeric_limits<double>::max();
    for (int r = 0; r < runs; ++r) {
        double s = 0;
        ok = SaxParse(path, s);
        if (!ok) {
            return 0;
        }
        best = std::min(best, s);
    }
    return best;
}

void PrintReadErrors(const std::string& path) {
    Korvel::ReportCollector collector(Korvel::ReportLevelError);
    auto ecu = Korvel::GetKLReader().ReadFile(path.c_str(), "", collector);
    std::fprintf(stderr, "  ReadFile('%s') refused the document (%u errors):\n", path.c_str(),
                 collector.GetErrorCount());
    const auto& errors = collector.GetErrors();
    for (size_t i = 0; i < errors.size() && i < 5; ++i) {
        std::fprintf(stderr, "    %s\n", errors[i].c_str());
    }
}

uint64_t StatusKb(const char* key) {
    std::ifstream status("/proc/self/status");
    std::string line;
    const size_t keyLength = std::strlen(key);
    while (std::getline(status, line)) {
        if (line.compare(0, keyLength, key) == 0 && line.size() > keyLength && line[keyLength] == ':') {
            return std::strtoull(line.c_str() + keyLength + 1, nullptr, 10);
        }
    }
    return 0;
}

// Runs in a fresh process (see MeasureMemory): warms the reader up on a tiny document, then
// reads the file once and prints "rssBeforeKb hwmKb modelKb ok".
int MemoryChild(const std::string& path) {
    auto& reader = Korvel::GetKLReader();
    reader.ReadText(CreateXmlForEmptyEcu(0, 1), "").reset();
    malloc_trim(0);
    const uint64_t rssBefore = StatusKb("VmRSS");
    // Reset the peak to the current RSS (Linux 4.0+); without it the peak counts from the
    // start of this small process, which is below rssBefore anyway.
    if (FILE* clear = std::fopen("/proc/self/clear_refs", "w")) {
        std::fputs("5", clear);
        std::fclose(clear);
    }
    auto ecu = reader.ReadFile(path.c_str(), "");
    const uint64_t hwm = StatusKb("VmHWM");
    // What the read freed (the parser's buffers) goes back first: the rest is the model, in the
    // heap and in the model's own memory alike.
    malloc_trim(0);
    const uint64_t rssAfter = StatusKb("VmRSS");
    std::printf("%llu %llu %llu %d\n", static_cast<unsigned long long>(rssBefore),
                static_cast<unsigned long long>(hwm),
                static_cast<unsigned long long>(rssAfter > rssBefore ? rssAfter - rssBefore : 0),
                ecu != nullptr ? 1 : 0);
    std::fflush(stdout);
    // The model's teardown is not part of the measurement.
    std::_Exit(0);
}

std::string SelfPath() {
    char buffer[4096];
    const ssize_t n = readlink("/proc/self/exe", buffer, sizeof buffer - 1);
    return n > 0 ? std::string(buffer, static_cast<size_t>(n)) : std::string();
}

// Peak memory of one read, in a child process of its own: the parent holds generated text,
// earlier models and allocator caches that would blur the figure. The peak is VmHWM after the
// read minus VmRSS before it (all memory the read touched at its highest point, parser buffers
// and allocator overhead included); the model figure is the resident memory the loaded model
// still holds once the read's freed heap memory is handed back.
bool MeasureMemory(const std::string& path, Result& result) {
    const std::string self = SelfPath();
    int fds[2];
    if (self.empty() || pipe(fds) != 0) {
        return false;
    }
    const pid_t pid = fork();
    if (pid < 0) {
        close(fds[0]);
        close(fds[1]);
        return false;
    }
    if (pid == 0) {
        dup2(fds[1], STDOUT_FILENO);
        close(fds[0]);
        close(fds[1]);
        execl(self.c_str(), self.c_str(), "--memory-child", path.c_str(), static_cast<char*>(nullptr));
        _exit(127);
    }
    close(fds[1]);
    std::string output;
    char buffer[256];
    ssize_t n;
    while ((n = read(fds[0], buffer, sizeof buffer)) > 0) {
        output.append(buffer, static_cast<size_t>(n));
    }
    close(fds[0]);
    int status = 0;
    waitpid(pid, &status, 0);
    unsigned long long rssBefore = 0, hwm = 0, model = 0;
    int ok = 0;
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0 ||
        std::sscanf(output.c_str(), "%llu %llu %llu %d", &rssBefore, &hwm, &model, &ok) != 4 || ok != 1) {
        return false;
    }
    const double doc = static_cast<double>(result.bytes);
    result.peakOverDoc = static_cast<double>(hwm > rssBefore ? hwm - rssBefore : 0) * 1024.0 / doc;
    result.modelOverDoc = static_cast<double>(model) * 1024.0 / doc;
    result.memoryOk = true;
    return true;
}

// Enough runs that the best of them is likely to have had a quiet moment, and that the median
// of the read/floor pairs moves little with a single slow pair: with nine pairs, two spoilt
// ones leave the median inside the quiet ones. A large document's run takes seconds, so one
// pause of the machine spoils a larger share of its runs.
int DefaultRuns(uint64_t bytes) {
    if (bytes <= 2 * kMB) {
        return 15;
    }
    if (bytes <= 20 * kMB) {
        return 12;
    }
    return 9;
}

Result Measure(const std::string& path, const std::string& name, const Options& options,
               const std::string& workDir, int runs) {
    Result r;
    r.name = name;
    r.bytes = FileSize(path);
    r.runs = runs;
    auto& reader = Korvel::GetKLReader();

    if (options.only == "sax") {
        bool ok = false;
        r.sax = BestSax(path, r.runs, ok);
        return r;
    }

    // Warm the page cache and the libraries once.
    double ignored = 0;
    SaxParse(path, ignored);

    // Floor, read and write interleaved: each run times the floor, then the read, then the
    // write of the model just read, so that the writes see the same moments as the reads.
    std::unique_ptr<Korvel::IEcu> ecu;
    std::string text;
    const bool writing = options.only != "read";
    r.sax = options.only.empty() ? std::numeric_limits<double>::max() : 0.0;
    r.read = std::numeric_limits<double>::max();
    r.write = writing ? std::numeric_limits<double>::max() : 0.0;
    r.destroy = std::numeric_limits<double>::max();
    for (int i = 0; i < r.runs; ++i) {
        double floorSeconds = 0;
        // With --only write the first model serves every write.
        if (options.only != "write" || !ecu) {
            // The floor and the read both start from a trimmed heap: the parser's buffers come
            // from fresh pages in both.
            malloc_trim(0);
            if (options.only.empty()) {
                if (!SaxParse(path, floorSeconds)) {
                    std::fprintf(stderr, "  xerces-c refused '%s'\n", path.c_str());
                    return r;
                }
                r.sax = std::min(r.sax, floorSeconds);
            }
            // The last model goes only now, just before the read, and its memory goes back to
            // the system: each read gets fresh pages, as a first read does. Released any
            // earlier, on a virtual machine that hands freed memory back to its host after
            // about a second, the pages would also come from the host again (see README).
            if (ecu) {
                const double start = Now();
                ecu.reset();
                r.destroy = std::min(r.destroy, Now() - start);
            }
            malloc_trim(0);
            ColdCaches();
            const double start = Now();
            ecu = reader.ReadFile(path.c_str(), "");
            const double readSeconds = Now() - start;
            r.read = std::min(r.read, readSeconds);
            if (floorSeconds > 0) {
                r.pairRatios.push_back(readSeconds / floorSeconds);
                r.pairFloorsPerMB.push_back(floorSeconds / (static_cast<double>(r.bytes) / kMB));
            }
            if (!ecu) {
                PrintReadErrors(path);
                return r;
            }
        }
        if (!writing) {
            continue;
        }
        // Each run writes into an empty string, as a caller's first write does; releasing the
        // previous document is not part of the write. The freed memory goes back to the system,
        // as before each read: a first write gets fresh pages at every size, while the heap
        // would otherwise keep a small document's text for the next run and only the large ones
        // (beyond the allocator's reuse) would pay for fresh pages. As the model, the previous
        // text goes just before the write.
        std::string().swap(text);
        malloc_trim(0);
        ColdCaches();
        const double start = Now();
        const uint32_t length = Korvel::GetKLWriter().WriteToString(*ecu, text, "utf-8");
        const double writeSeconds = Now() - start;
        r.write = std::min(r.write, writeSeconds);
        if (floorSeconds > 0) {
            r.writePairRatios.push_back(writeSeconds / floorSeconds);
        }
        if (length == 0 || length != text.size()) {
            std::fprintf(stderr, "  WriteToString failed (%u bytes)\n", length);
            return r;
        }
    }
    r.readOk = true;
    if (!writing) {
        return r;
    }
    r.writeOk = true;
    {
        const double start = Now();
        ecu.reset();
        r.destroy = std::min(r.destroy, Now() - start);
    }

    std::string original;
    r.identical = ReadWholeFile(path, original) && original == text;
    if (r.identical) {
        r.outSax = r.sax;
    } else {
        size_t at = 0;
        while (at < original.size() && at < text.size() && original[at] == text[at]) {
            ++at;
        }
        const size_t lineStart = original.rfind('\n', at == 0 ? 0 : at - 1);
        const size_t from = lineStart == std::string::npos ? 0 : lineStart + 1;
        std::fprintf(
            stderr,
            "  the written document differs from '%s' at byte %zu:\n    read:    %s\n    written: %s\n",
            path.c_str(), at, original.substr(from, original.find('\n', at) - from).c_str(),
            text.substr(from, text.find('\n', at) - from).c_str());
        const std::string written = workDir + "/" + name + ".written.xml";
        bool ok = WriteWholeFile(written, text);
        if (ok) {
            r.outSax = BestSax(written, r.runs, ok);
        }
        if (!ok) {
            std::fprintf(stderr, "  the written document of '%s' does not parse\n", path.c_str());
            r.outSax = 0;
        }
        if (!options.keep) {
            std::remove(written.c_str());
        }
    }

    if (options.memory && !MeasureMemory(path, r)) {
        std::fprintf(stderr, "  memory measurement of '%s' failed\n", path.c_str());
    }
    return r;
}

// Folds the figures of a later round into the result: times keep the best run, a check holds
// only when it held in every round, memory comes from the round that measured it.
void Merge(Result& into, const Result& round) {
    const auto best = [](double& kept, double fresh) {
        if (fresh > 0 && (kept <= 0 || fresh < kept)) {
            kept = fresh;
        }
    };
    best(into.sax, round.sax);
    best(into.read, round.read);
    best(into.write, round.write);
    best(into.outSax, round.outSax);
    best(into.destroy, round.destroy);
    into.runs += round.runs;
    into.pairRatios.insert(into.pairRatios.end(), round.pairRatios.begin(), round.pairRatios.end());
    into.pairFloorsPerMB.insert(into.pairFloorsPerMB.end(), round.pairFloorsPerMB.begin(),
                                round.pairFloorsPerMB.end());
    into.writePairRatios.insert(into.writePairRatios.end(), round.writePairRatios.begin(),
                                round.writePairRatios.end());
    into.readOk = into.readOk && round.readOk;
    into.writeOk = into.writeOk && round.writeOk;
    into.identical = into.identical && round.identical;
    if (round.memoryOk) {
        into.memoryOk = true;
        into.peakOverDoc = round.peakOverDoc;
        into.modelOverDoc = round.modelOverDoc;
    }
}

// Cost of first touching fresh memory (page faults), in ms per MB: a large model or output
// text pays it once per page, and it explains why very large documents cost more per MB than
// small ones whose memory the allocator reuses.
double FreshMemoryMsPerMB() {
    constexpr size_t kBytes = 64u << 20;
    const double start = Now();
    void* block = mmap(nullptr, kBytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (block == MAP_FAILED) {
        return 0;
    }
    auto* bytes = static_cast<volatile char*>(block);
    for (size_t at = 0; at < kBytes; at += 4096) {
        bytes[at] = 1;
    }
    const double seconds = Now() - start;
    munmap(block, kBytes);
    return seconds * 1e3 / (static_cast<double>(kBytes) / kMB);
}

std::string CpuName() {
    std::ifstream cpuinfo("/proc/cpuinfo");
    std::string line;
    while (std::getline(cpuinfo, line)) {
        if (line.compare(0, 10, "model name") == 0) {
            const size_t colon = line.find(':');
            return colon == std::string::npos ? line : line.substr(colon + 2);
        }
    }
    return "unknown CPU";
}

std::string LoadAverage() {
    std::ifstream in("/proc/loadavg");
    std::string a, b, c;
    in >> a >> b >> c;
    return a + " " + b + " " + c;
}

const char* Verdict(bool pass) {
    return pass ? "PASS" : "FAIL";
}

// The smallest and largest of some values.
struct Range {
    double min = 1e300;
    double max = 0;
    void Add(double value) {
        min = std::min(min, value);
        max = std::max(max, value);
    }
    // How far the largest lies above the smallest, in percent.
    double Percent() const { return max > 0 ? (max / min - 1) * 100 : 0.0; }
};

// Prints the target line of one ratio to the floor, with the median of the pairs when there
// are any (then an info line gives their range and the best run over the best floor), and
// returns the ratio judged.
double PrintRatio(const std::string& name, const char* what, const char* floorName,
                  const std::vector<double>& pairs, double best, double bestFloor, double limit) {
    const double bestRatio = bestFloor > 0 ? best / bestFloor : 0.0;
    if (pairs.empty()) {
        // No floor at all (the written document did not parse) fails.
        std::printf("  %-8s %s  %s %.2fx %s (max %.1fx)\n", name.c_str(),
                    Verdict(bestFloor > 0 && bestRatio <= limit), what, bestRatio, floorName, limit);
        return bestRatio;
    }
    const double ratio = Median(pairs);
    const auto [low, high] = std::minmax_element(pairs.begin(), pairs.end());
    std::printf("  %-8s %s  %s %.2fx %s, median of %zu runs timed back to back with it (max %.1fx)\n",
                name.c_str(), Verdict(ratio <= limit), what, ratio, floorName, pairs.size(), limit);
    std::printf("  %-8s info  %s / floor of single runs %.2f..%.2f; best %s / best floor %.2f\n",
                name.c_str(), what, *low, *high, what, bestRatio);
    return ratio;
}

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
            gCpuTime = true;
        } else if (arg == "--warm-caches") {
            gColdCaches = false;
        } else {
            return false;
        }
    }
    return true;
}

std::string SizeName(double mb) {
    char buffer[32];
    std::snprintf(buffer, sizeof buffer, "%gMB", mb);
    return buffer;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc == 3 && std::strcmp(argv[1], "--memory-child") == 0) {
        return MemoryChild(argv[2]);
    }
    Options options;
    if (!ParseOptions(argc, argv, options)) {
        PrintUsage();
        return 2;
    }

    xercesc::XMLPlatformUtils::Initialize();

    std::string workDir = options.dir;
    bool ownDir = false;
    if (workDir.empty()) {
        const char* tmp = std::getenv("TMPDIR");
        std::string pattern = std::string(tmp != nullptr && *tmp != 0 ? tmp : "/tmp") + "/zekl_bench.XXXXXX";
        if (mkdtemp(pattern.data()) == nullptr) {
            std::fprintf(stderr, "zekl_bench: cannot create a temporary directory: %s\n",
                         std::strerror(errno));
            return 2;
        }
        workDir = pattern;
        ownDir = true;
    } else {
        mkdir(workDir.c_str(), 0755);
    }

    std::printf("zekl_bench: ZeKL %s, xerces-c %s, %s, %ld CPUs, load %s, timer %s, %s caches\n",
                Korvel::GetVersionString(), XERCES_FULLVERSIONDOT, CpuName().c_str(),
                sysconf(_SC_NPROCESSORS_ONLN), LoadAverage().c_str(),
                gCpuTime ? "process CPU time" : "steady_clock", gColdCaches ? "cold" : "warm");

    std::vector<std::pair<std::string, std::string>> documents;  // name, path
    std::vector<std::string> generated;
    if (options.files.empty()) {
        for (double mb : options.sizesMb) {
            const std::string name = SizeName(mb);
            const std::string path = workDir + "/zekl_" + name + ".xml";
            ZeKLBench::DocStats stats;
            std::string error;
            const auto start = Clock::now();
            if (!ZeKLBench::GenerateDocument(path, static_cast<uint64_t>(mb * kMB), options.seed, stats,
                                             error)) {
                std::fprintf(stderr, "zekl_bench: %s\n", error.c_str());
                return 2;
            }
            std::printf(
                "generated %s: %llu bytes, %llu instances, %llu parameters, %llu conversions (%.2f s)\n",
                path.c_str(), static_cast<unsigned long long>(stats.bytes),
                static_cast<unsigned long long>(stats.instances),
                static_cast<unsigned long long>(stats.parameters),
                static_cast<unsigned long long>(stats.formulaConversions + stats.tableConversions),
                Seconds(Clock::now() - start));
            documents.emplace_back(name, path);
            generated.push_back(path);
        }
    } else {
        for (const std::string& file : options.files) {
            const size_t slash = file.find_last_of('/');
            documents.emplace_back(slash == std::string::npos ? file : file.substr(slash + 1), file);
        }
    }
    std::fflush(stdout);

    std::printf("fresh memory: %.2f ms per MB touched for the first time\n", FreshMemoryMsPerMB());
    std::fflush(stdout);

    // The documents take turns, a share of their runs per round: the speed of a shared machine
    // drifts over minutes, and measuring each size in one stretch let that drift pass for a
    // difference between sizes.
    std::vector<Result> results(documents.size());
    for (int round = 0; round < options.rounds; ++round) {
        Options roundOptions = options;
        roundOptions.memory = options.memory && round + 1 == options.rounds;
        for (std::size_t d = 0; d < documents.size(); ++d) {
            const auto& [name, path] = documents[d];
            const int total = options.runs > 0 ? options.runs : DefaultRuns(FileSize(path));
            const int share = std::max(1, (total + options.rounds - 1) / options.rounds);
            const Result measured = Measure(path, name, roundOptions, workDir, share);
            if (round == 0) {
                results[d] = measured;
            } else {
                Merge(results[d], measured);
            }
        }
    }
    bool broken = false;
    for (const Result& r : results) {
        if (options.only.empty() ? !(r.readOk && r.writeOk) : false) {
            broken = true;
        }
    }

    std::printf("\n%-8s %9s %4s | %9s %8s | %9s %8s %6s | %9s %8s %6s | %6s %6s | %5s %7s\n", "document",
                "MB", "runs", "floor ms", "MB/s", "read ms", "MB/s", "x flr", "write ms", "MB/s", "x flr",
                "peak", "model", "same", "free ms");
    for (const Result& r : results) {
        const double mb = static_cast<double>(r.bytes) / kMB;
        std::printf(
            "%-8s %9.2f %4d | %9.2f %8.1f | %9.2f %8.1f %6.2f | %9.2f %8.1f %6.2f | %5.2fx %5.2fx | %5s "
            "%7.2f\n",
            r.name.c_str(), mb, r.runs, r.sax * 1e3, MBs(r.bytes, r.sax), r.read * 1e3, MBs(r.bytes, r.read),
            r.sax > 0 ? r.read / r.sax : 0.0, r.write * 1e3, MBs(r.bytes, r.write),
            r.outSax > 0 ? r.write / r.outSax : 0.0, r.peakOverDoc, r.modelOverDoc,
            r.identical ? "yes" : "NO", r.destroy < 1e9 ? r.destroy * 1e3 : 0.0);
    }

    bool allPass = !broken;
    if (options.only.empty()) {
        std::printf("\ntargets:\n");
        // The read is judged by the median of its ratios to the floor timed back to back with it:
        // a read and its floor see the machine alike, while the best read and the best floor may
        // come from different moments of a machine whose speed drifts. The median leaves out
        // single pauses. A write lasts a quarter to a sixth of its floor and does not share its
        // moment: its ratio to the floor is its best run over the best floor of its output. Its
        // flatness across documents is judged by pairs as the read's is (see below).
        std::vector<double> readRatios, writeRatios, floorsPerMB;
        Range bestRead, bestWrite, bestFloor;
        for (const Result& r : results) {
            if (!r.readOk || !r.writeOk) {
                std::printf("  %-8s FAIL  read or write did not complete\n", r.name.c_str());
                allPass = false;
                continue;
            }
            const double mb = static_cast<double>(r.bytes) / kMB;
            bestRead.Add(r.read / mb);
            bestWrite.Add(r.write / mb);
            bestFloor.Add(r.sax / mb);
            floorsPerMB.insert(floorsPerMB.end(), r.pairFloorsPerMB.begin(), r.pairFloorsPerMB.end());

            const double readRatio = PrintRatio(r.name, "read", "the empty-handler parse", r.pairRatios,
                                                r.read, r.sax, kReadOverFloorMax);
            if (!r.pairRatios.empty()) {
                readRatios.push_back(readRatio);  // the median of the pairs
            }
            if (!r.writePairRatios.empty()) {
                writeRatios.push_back(Median(r.writePairRatios));
            }
            const double writeRatio = PrintRatio(r.name, "write", "the empty-handler parse of its output", {},
                                                 r.write, r.outSax, kWriteOverFloorMax);
            const bool writeSpeedPass = MBs(r.bytes, r.write) >= kWriteMBsMin;
            std::printf("  %-8s %s  write %.0f MB/s (min %.0f)\n", r.name.c_str(), Verdict(writeSpeedPass),
                        MBs(r.bytes, r.write), kWriteMBsMin);
            std::printf("  %-8s %s  written document byte-identical to the one read\n", r.name.c_str(),
                        Verdict(r.identical));
            allPass = allPass && readRatio <= kReadOverFloorMax && r.outSax > 0 &&
                      writeRatio <= kWriteOverFloorMax && writeSpeedPass && r.identical;
            if (options.memory) {
                const bool memoryPass = r.memoryOk && r.peakOverDoc <= kPeakOverDocMax;
                std::printf(
                    "  %-8s %s  peak memory of the read %.2fx the document (max %.1fx; model %.2fx)\n",
                    r.name.c_str(), Verdict(memoryPass), r.peakOverDoc, kPeakOverDocMax, r.modelOverDoc);
                allPass = allPass && memoryPass;
            }
        }
        if (results.size() >= 2 && !broken) {
            // The flatness of the read and of the write, judged by the same pairs: each document's
            // median ratio to the floor of its run, taken at one speed of the machine, the floor's
            // median time per MB over all pairs of the run. The best runs of different documents
            // come from different moments, and on a shared machine those differ by a third: the
            // floor, the same code at every size, then spreads as much. A read or a write that
            // grows faster than the parse still shows, as a higher ratio for the larger documents.
            const bool paired = readRatios.size() == results.size() && !floorsPerMB.empty();
            const double speed = paired ? Median(floorsPerMB) : 0.0;
            const auto atSpeed = [speed](const std::vector<double>& ratios) {
                Range perMB;
                for (const double ratio : ratios) {
                    perMB.Add(ratio * speed);
                }
                return perMB;
            };
            const Range readPerMB = atSpeed(readRatios);
            const Range writePerMB = atSpeed(writeRatios);
            const auto flatness = [](const char* what, const Range& range, const char* how) {
                const bool flat = range.max <= kFlatnessMax * range.min;
                std::printf("  %-8s %s  %s time per MB %.2f..%.2f ms, spread %.0f%% (max %.0f%%), %s\n",
                            "all", Verdict(flat), what, range.min * 1e3, range.max * 1e3, range.Percent(),
                            (kFlatnessMax - 1) * 100, how);
                return flat;
            };
            const bool readFlat = paired ? flatness("read", readPerMB, "from its pairs")
                                         : flatness("read", bestRead, "best runs");
            const bool writePaired = paired && writeRatios.size() == results.size();
            const bool writeFlat = writePaired ? flatness("write", writePerMB, "from its pairs")
                                               : flatness("write", bestWrite, "best runs");
            // Not targets: the speed the pairs are taken at, and the best runs, by which the
            // machine's drift shows.
            if (paired) {
                std::printf(
                    "  %-8s info  from its pairs: each document's median read / floor and write / floor "
                    "at the floor's median speed, %.2f ms per MB\n",
                    "all", speed * 1e3);
            }
            std::printf(
                "  %-8s info  best runs in ms per MB: read %.2f..%.2f (%.0f%%), write %.2f..%.2f (%.0f%%), "
                "floor %.2f..%.2f (%.0f%%)\n",
                "all", bestRead.min * 1e3, bestRead.max * 1e3, bestRead.Percent(), bestWrite.min * 1e3,
                bestWrite.max * 1e3, bestWrite.Percent(), bestFloor.min * 1e3, bestFloor.max * 1e3,
                bestFloor.Percent());
            allPass = allPass && readFlat && writeFlat;
        }
        std::printf("overall: %s\n", allPass ? "PASS" : "FAIL");
    }

    if (!options.keep) {
        for (const std::string& path : generated) {
            std::remove(path.c_str());
        }
        if (ownDir) {
            rmdir(workDir.c_str());
        }
    } else {
        std::printf("documents kept in %s\n", workDir.c_str());
    }
    xercesc::XMLPlatformUtils::Terminate();
    if (broken) {
        return 2;
    }
    return options.check && !allPass ? 1 : 0;
}
