// zekl_diff_bench: is comparing two descriptions cheap next to reading them? `zekl diff A B`
// reads both documents and compares the models; the target is that the whole takes less than
// twice the time of the two reads, that is that the comparison costs less than the reads.
//
// It generates a document A, reads it, changes the model in known places (parameter lengths,
// conversion factors, an NRC text, removed and added instances) and writes it as B, so that the
// comparison must find exactly the changes made. Each run then reads A and B with cold CPU
// caches and compares the two models; the target takes the median over the runs of
// (read A + read B + compare) / (read A + read B), each run's three times measured back to back.
#include "DocGenerator.h"
#include "System.h"

#include <ZeKL/ZeKL.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

namespace {

using namespace ZeKLBench;

constexpr double kMB = 1000000.0;
constexpr double kTargetRatio = 2.0;

struct Options {
    double sizeMb = 100.0;
    int runs = 5;
    uint64_t seed = 1;
    std::string dir;
    bool keep = false;
    bool cpuTime = false;
    bool check = false;
};

void PrintUsage() {
    std::fprintf(
        stderr,
        "usage: zekl_diff_bench [--size-mb N] [--runs K] [--seed S] [--dir DIR] [--keep] [--cpu-time] "
        "[--check]\n"
        "  Generates a document of about N MB (default 100) and a changed copy, then times reading\n"
        "  both and comparing them, K times (default 5). --check makes a FAIL give exit status 1.\n");
}

bool ParseOptions(int argc, char** argv, Options& options) {
    for (int i = 1; i < argc; ++i) {
        const std::string arg = argv[i];
        const bool hasValue = i + 1 < argc;
        char* end = nullptr;
        if (arg == "--size-mb" && hasValue) {
            options.sizeMb = std::strtod(argv[++i], &end);
            if (*end != 0 || options.sizeMb <= 0) {
                return false;
            }
        } else if (arg == "--runs" && hasValue) {
            options.runs = static_cast<int>(std::strtol(argv[++i], &end, 10));
            if (*end != 0 || options.runs < 1) {
                return false;
            }
        } else if (arg == "--seed" && hasValue) {
            options.seed = std::strtoull(argv[++i], &end, 0);
            if (*end != 0) {
                return false;
            }
        } else if (arg == "--dir" && hasValue) {
            options.dir = argv[++i];
        } else if (arg == "--keep") {
            options.keep = true;
        } else if (arg == "--cpu-time") {
            options.cpuTime = true;
        } else if (arg == "--check") {
            options.check = true;
        } else {
            return false;
        }
    }
    return true;
}

// The changes made to A's model to give B, each one difference the comparison must find.
struct Changes {
    std::size_t lengths = 0;
    std::size_t factors = 0;
    std::size_t nrcs = 0;
    std::size_t removed = 0;
    std::size_t added = 0;
    std::size_t Total() const { return lengths + factors + nrcs + removed + added; }
};

// Every 100th instance's first response parameter one bit longer, every 50th conversion's
// factor doubled, the first NRC's text changed; every 500th instance left out and one copy
// under a new id added per 1000 instances. A container has no removal, so B's instances are a
// new container of copies.
Changes ChangeModel(Korvel::IEcu& ecu) {
    Changes changes;
    Korvel::IInstanceContainer& instances = *ecu.GetInstanceContainer();
    std::unique_ptr<Korvel::IInstanceContainer> changed = Korvel::GetFactory().CreateInstanceContainer();
    for (uint32_t i = 0; i < instances.GetCount(); ++i) {
        Korvel::IInstance* instance = instances.GetInstance(i);
        if (i % 500 == 499) {
            ++changes.removed;
            continue;
        }
        Korvel::IPosResponse* response = instance->GetPosResponse();
        if (i % 100 == 0 && response != nullptr && response->GetCount() != 0) {
            Korvel::IParam* param = response->GetParam(0);
            param->SetBitLength(param->GetBitLength() + 1);
            ++changes.lengths;
        }
        changed->AddInstance(*instance);
        if (i % 1000 == 998) {
            std::unique_ptr<Korvel::IInstance> copy = Korvel::GetFactory().CreateInstance();
            copy->SetRequest(*instance->GetRequest());
            copy->SetId((std::string(instance->GetId()) + "_Added").c_str());
            if (changed->AddInstance(*copy) != Korvel::InvalidIndex) {
                ++changes.added;
            }
        }
    }
    ecu.SetInstanceContainer(*changed);
    Korvel::IConversionContainer& conversions = *ecu.GetConversionContainer();
    for (uint32_t i = 0; i < conversions.GetCount(); i += 50) {
        Korvel::IConversion* conversion = conversions.GetConversion(i);
        conversion->SetFactor(conversion->GetFactor() != 0.0 ? conversion->GetFactor() * 2.0 : 1.0);
        ++changes.factors;
    }
    if (Korvel::INrcItem* nrc = ecu.GetNrcContainer()->GetNrc(0u)) {
        nrc->SetText((std::string(nrc->GetText()) + " (changed)").c_str());
        ++changes.nrcs;
    }
    return changes;
}

double Median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    const std::size_t middle = values.size() / 2;
    return values.size() % 2 != 0 ? values[middle] : (values[middle - 1] + values[middle]) / 2.0;
}

double Best(const std::vector<double>& values) {
    return *std::min_element(values.begin(), values.end());
}

std::unique_ptr<Korvel::IEcu> TimedRead(const std::string& path, bool cpuTime, double& seconds) {
    ColdCaches();
    const double start = Now(cpuTime);
    std::unique_ptr<Korvel::IEcu> ecu = Korvel::GetKLReader().ReadFile(path.c_str(), "");
    seconds = Now(cpuTime) - start;
    return ecu;
}

}  // namespace

int main(int argc, char** argv) {
    Options options;
    if (!ParseOptions(argc, argv, options)) {
        PrintUsage();
        return 2;
    }
    const std::string dir = options.dir.empty() ? MakeTemporaryFolder() : options.dir;
    if (dir.empty() || !MakeFolder(dir)) {
        std::fprintf(stderr, "zekl_diff_bench: cannot make a folder for the documents\n");
        return 2;
    }
    const std::string pathA = dir + "/zekl_diff_a.xml";
    const std::string pathB = dir + "/zekl_diff_b.xml";
    DocStats stats;
    std::string error;
    if (!GenerateDocument(pathA, static_cast<uint64_t>(options.sizeMb * kMB), options.seed, stats, error)) {
        std::fprintf(stderr, "zekl_diff_bench: %s\n", error.c_str());
        return 2;
    }
    Changes changes;
    {
        std::unique_ptr<Korvel::IEcu> ecu = Korvel::GetKLReader().ReadFile(pathA.c_str(), "");
        if (!ecu) {
            std::fprintf(stderr, "zekl_diff_bench: the generated document does not read\n");
            return 2;
        }
        changes = ChangeModel(*ecu);
        std::string reason;
        if (Korvel::GetKLWriter().WriteToFile(*ecu, pathB.c_str(), "utf-8", reason) == 0) {
            std::fprintf(stderr, "zekl_diff_bench: cannot write %s: %s\n", pathB.c_str(), reason.c_str());
            return 2;
        }
    }
    const double mbA = static_cast<double>(FileSize(pathA)) / kMB;
    const double mbB = static_cast<double>(FileSize(pathB)) / kMB;
    std::printf(
        "A: %.1f MB, %llu instances, %llu parameters; B: %.1f MB with %zu changes "
        "(%zu lengths, %zu factors, %zu NRC, %zu removed, %zu added instances)\n",
        mbA, static_cast<unsigned long long>(stats.instances),
        static_cast<unsigned long long>(stats.parameters), mbB, changes.Total(), changes.lengths,
        changes.factors, changes.nrcs, changes.removed, changes.added);
    std::printf("timer: %s, cold CPU caches before each read, %d runs\n",
                options.cpuTime ? "process CPU time" : "steady_clock", options.runs);

    std::vector<double> readsA;
    std::vector<double> readsB;
    std::vector<double> compares;
    std::vector<double> orderedCompares;
    std::vector<double> ratios;
    bool found = true;
    for (int run = 0; run < options.runs; ++run) {
        double readA = 0.0;
        double readB = 0.0;
        std::unique_ptr<Korvel::IEcu> a = TimedRead(pathA, options.cpuTime, readA);
        std::unique_ptr<Korvel::IEcu> b = TimedRead(pathB, options.cpuTime, readB);
        if (!a || !b) {
            std::fprintf(stderr, "zekl_diff_bench: a document does not read\n");
            return 2;
        }
        std::vector<Korvel::DiffEntry> entries;
        const double start = Now(options.cpuTime);
        const bool compared = Korvel::DiffEcus(*a, *b, Korvel::DiffOptions{}, entries);
        const double compare = Now(options.cpuTime) - start;
        Korvel::DiffOptions ordered;
        ordered.order = true;
        std::vector<Korvel::DiffEntry> orderedEntries;
        const double orderedStart = Now(options.cpuTime);
        Korvel::DiffEcus(*a, *b, ordered, orderedEntries);
        orderedCompares.push_back(Now(options.cpuTime) - orderedStart);
        if (!compared || entries.size() != changes.Total()) {
            std::printf("run %d: the comparison found %zu differences, %zu were made\n", run + 1,
                        entries.size(), changes.Total());
            found = false;
        }
        readsA.push_back(readA);
        readsB.push_back(readB);
        compares.push_back(compare);
        ratios.push_back((readA + readB + compare) / (readA + readB));
        std::printf(
            "run %d: read A %.0f ms, read B %.0f ms, compare %.1f ms (with --order %.1f ms), ratio %.3f\n",
            run + 1, readA * 1e3, readB * 1e3, compare * 1e3, orderedCompares.back() * 1e3, ratios.back());
        a.reset();
        b.reset();
        TrimHeap();
    }
    const double reads = Best(readsA) + Best(readsB);
    const double compare = Best(compares);
    const double median = Median(ratios);
    std::printf(
        "best: read A %.0f ms (%.1f ms/MB), read B %.0f ms, compare %.1f ms (%.2f ms/MB of A and B), "
        "--order %.1f ms\n",
        Best(readsA) * 1e3, Best(readsA) * 1e3 / mbA, Best(readsB) * 1e3, compare * 1e3,
        compare * 1e3 / (mbA + mbB), Best(orderedCompares) * 1e3);
    std::printf("info: best runs give (reads + compare) / reads = %.3f; single runs %.3f to %.3f\n",
                (reads + compare) / reads, *std::min_element(ratios.begin(), ratios.end()),
                *std::max_element(ratios.begin(), ratios.end()));
    const bool fast = median < kTargetRatio;
    std::printf(
        "%s  diff of two %.0f MB documents: (reads + compare) / reads = %.3f, median of runs (target < "
        "%.1f)\n",
        fast ? "PASS" : "FAIL", options.sizeMb, median, kTargetRatio);
    std::printf("%s  the comparison found exactly the %zu changes made\n", found ? "PASS" : "FAIL",
                changes.Total());
    if (!options.keep) {
        std::remove(pathA.c_str());
        std::remove(pathB.c_str());
        if (options.dir.empty()) {
            RemoveFolder(dir);
        }
    }
    return options.check && !(fast && found) ? 1 : 0;
}
