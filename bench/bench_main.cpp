// zekl_bench: read and write speed of ZeKL against the floor of the XML parser itself, and the
// memory of a loaded model, on generated documents of about 1, 10 and 100 MB (README.md says
// how it measures and why). This file runs the rounds; Measure.cpp measures one document,
// Report.cpp judges the targets, System.cpp asks the system.
#include "DocGenerator.h"
#include "Measure.h"
#include "Options.h"
#include "Report.h"
#include "System.h"

#include <ZeKL/ZeKL.h>

#include <xercesc/util/PlatformUtils.hpp>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace ZeKLBench;

using Documents = std::vector<std::pair<std::string, std::string>>;  // name, path

std::string SizeName(double mb) {
    char buffer[32];
    std::snprintf(buffer, sizeof buffer, "%gMB", mb);
    return buffer;
}

// The documents to measure: those given, or new ones of the sizes asked for.
bool CollectDocuments(const Options& options, const std::string& workDir, Documents& documents,
                      std::vector<std::string>& generated) {
    if (!options.files.empty()) {
        for (const std::string& file : options.files) {
            const std::size_t slash = file.find_last_of('/');
            documents.emplace_back(slash == std::string::npos ? file : file.substr(slash + 1), file);
        }
        return true;
    }
    for (double mb : options.sizesMb) {
        const std::string name = SizeName(mb);
        const std::string path = workDir + "/zekl_" + name + ".xml";
        DocStats stats;
        std::string error;
        const auto start = std::chrono::steady_clock::now();
        if (!GenerateDocument(path, static_cast<uint64_t>(mb * kMB), options.seed, stats, error)) {
            std::fprintf(stderr, "zekl_bench: %s\n", error.c_str());
            return false;
        }
        std::printf("generated %s: %llu bytes, %llu instances, %llu parameters, %llu conversions (%.2f s)\n",
                    path.c_str(), static_cast<unsigned long long>(stats.bytes),
                    static_cast<unsigned long long>(stats.instances),
                    static_cast<unsigned long long>(stats.parameters),
                    static_cast<unsigned long long>(stats.formulaConversions + stats.tableConversions),
                    std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
        documents.emplace_back(name, path);
        generated.push_back(path);
    }
    return true;
}

// The documents take turns, a share of their runs per round: the speed of a shared machine
// drifts over minutes, and measuring each size in one stretch let that drift pass for a
// difference between sizes.
std::vector<Result> MeasureInRounds(const Options& options, const Documents& documents,
                                    const std::string& workDir) {
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
    return results;
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
    const bool ownDir = workDir.empty();
    if (ownDir) {
        workDir = MakeTemporaryFolder();
        if (workDir.empty()) {
            std::fprintf(stderr, "zekl_bench: cannot create a temporary folder\n");
            return 2;
        }
    } else {
        MakeFolder(workDir);
    }

    std::printf("zekl_bench: ZeKL %s, xerces-c %s, %s, %ld CPUs, load %s, timer %s, %s caches\n",
                Korvel::GetVersionString(), XERCES_FULLVERSIONDOT, CpuName().c_str(), ProcessorCount(),
                LoadAverage().c_str(), options.cpuTime ? "process CPU time" : "steady_clock",
                options.coldCaches ? "cold" : "warm");

    Documents documents;
    std::vector<std::string> generated;
    if (!CollectDocuments(options, workDir, documents, generated)) {
        return 2;
    }
    const double freshMemory = FreshMemoryMsPerMB();
    if (freshMemory >= 0) {
        std::printf("fresh memory: %.2f ms per MB touched for the first time\n", freshMemory);
    } else {
        std::printf("fresh memory: not measured on this platform\n");
    }
    if (!TrimHeap()) {
        std::printf("heap trimming: not available in this C library; runs start from the heap as it is\n");
    }
    std::fflush(stdout);

    const std::vector<Result> results = MeasureInRounds(options, documents, workDir);
    bool broken = false;
    for (const Result& r : results) {
        broken = broken || (options.only.empty() && !(r.readOk && r.writeOk));
    }
    PrintTable(results);
    const bool allPass = !options.only.empty() || PrintTargets(results, options, broken);

    if (!options.keep) {
        for (const std::string& path : generated) {
            std::remove(path.c_str());
        }
        if (ownDir) {
            RemoveFolder(workDir);
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
