#include "Report.h"

#include "Statistics.h"

#include <algorithm>
#include <cstdio>

namespace ZeKLBench {

namespace {

double MBs(uint64_t bytes, double seconds) {
    return seconds > 0 ? static_cast<double>(bytes) / kMB / seconds : 0.0;
}

const char* Verdict(bool pass) {
    return pass ? "PASS" : "FAIL";
}

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

}  // namespace

void PrintTable(const std::vector<Result>& results) {
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
}

bool PrintTargets(const std::vector<Result>& results, const Options& options, bool broken) {
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
            if (options.memory && !r.memoryOk) {
                std::printf(
                    "  %-8s info  memory not measured: this platform gives no resident size or child "
                    "processes\n",
                    r.name.c_str());
            } else if (options.memory) {
                const bool peakPass = r.peakOverDoc <= kPeakOverDocMax;
                const bool modelPass = r.modelOverDoc <= kModelOverDocMax;
                std::printf("  %-8s %s  peak memory of the read %.2fx the document (max %.1fx)\n",
                            r.name.c_str(), Verdict(peakPass), r.peakOverDoc, kPeakOverDocMax);
                std::printf("  %-8s %s  memory of the loaded model %.2fx the document (max %.1fx)\n",
                            r.name.c_str(), Verdict(modelPass), r.modelOverDoc, kModelOverDocMax);
                allPass = allPass && peakPass && modelPass;
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
    return allPass;
}

}  // namespace ZeKLBench
