#include "Measure.h"

#include "System.h"

#include <ZeKL/ZeKL.h>

#include <xercesc/framework/LocalFileInputSource.hpp>
#include <xercesc/parsers/SAXParser.hpp>
#include <xercesc/sax/HandlerBase.hpp>
#include <xercesc/sax/SAXParseException.hpp>
#include <xercesc/util/XMLString.hpp>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <limits>
#include <sstream>

namespace ZeKLBench {

namespace {

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

// The floor: parse with library defaults and handlers that do nothing.
bool SaxParse(const std::string& path, const Options& options, double& seconds) {
    using namespace xercesc;
    if (options.coldCaches) {
        ColdCaches();
    }
    const double start = Now(options.cpuTime);
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
    seconds = Now(options.cpuTime) - start;
    return ok;
}

double BestSax(const std::string& path, const Options& options, int runs, bool& ok) {
    double best = std::numeric_limits<double>::max();
    for (int r = 0; r < runs; ++r) {
        double s = 0;
        ok = SaxParse(path, options, s);
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

// Peak memory of one read, in a child process of its own: the parent holds generated text,
// earlier models and allocator caches that would blur the figure. The peak is VmHWM after the
// read minus VmRSS before it (all memory the read touched at its highest point, parser buffers
// and allocator overhead included); the model figure is the resident memory the loaded model
// still holds once the read's freed heap memory is handed back.
bool MeasureMemory(const std::string& path, Result& result) {
    std::string output;
    unsigned long long rssBefore = 0, hwm = 0, model = 0;
    int ok = 0;
    if (!RunChild(SelfPath(), path, output) ||
        std::sscanf(output.c_str(), "%llu %llu %llu %d", &rssBefore, &hwm, &model, &ok) != 4 || ok != 1) {
        return false;
    }
    const double doc = static_cast<double>(result.bytes);
    result.peakOverDoc = static_cast<double>(hwm > rssBefore ? hwm - rssBefore : 0) * 1024.0 / doc;
    result.modelOverDoc = static_cast<double>(model) * 1024.0 / doc;
    result.memoryOk = true;
    return true;
}

}  // namespace

// Runs in a fresh process (see MeasureMemory): warms the reader up by reading a tiny document
// from a file, as the measured read does, so that the code and buffers a first file read
// brings in are not counted as the model's; then reads the file once and prints
// "rssBeforeKb hwmKb modelKb ok".
int MemoryChild(const std::string& path) {
    auto& reader = Korvel::GetKLReader();
    const std::string tiny = path + ".warm-up.xml";
    {
        std::ofstream out(tiny, std::ios::binary);
        out << CreateXmlForEmptyEcu(0, 1);
    }
    reader.ReadFile(tiny.c_str(), "").reset();
    std::remove(tiny.c_str());
    TrimHeap();
    uint64_t rssBefore = 0;
    uint64_t ignored = 0;
    ResidentKb(rssBefore, ignored);
    // Without the reset the peak counts from the start of this small process, which is below
    // rssBefore anyway.
    ResetPeak();
    auto ecu = reader.ReadFile(path.c_str(), "");
    uint64_t hwm = 0;
    ResidentKb(ignored, hwm);
    // What the read freed (the parser's buffers) goes back first: the rest is the model, in the
    // heap and in the model's own memory alike.
    TrimHeap();
    uint64_t rssAfter = 0;
    ResidentKb(rssAfter, ignored);
    std::printf("%llu %llu %llu %d\n", static_cast<unsigned long long>(rssBefore),
                static_cast<unsigned long long>(hwm),
                static_cast<unsigned long long>(rssAfter > rssBefore ? rssAfter - rssBefore : 0),
                ecu != nullptr ? 1 : 0);
    std::fflush(stdout);
    // The model's teardown is not part of the measurement.
    std::_Exit(0);
}

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
    const auto now = [&options]() { return Now(options.cpuTime); };
    const auto coldCaches = [&options]() {
        if (options.coldCaches) {
            ColdCaches();
        }
    };

    if (options.only == "sax") {
        bool ok = false;
        r.sax = BestSax(path, options, r.runs, ok);
        return r;
    }

    // Warm the page cache and the libraries once.
    double ignored = 0;
    SaxParse(path, options, ignored);

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
            TrimHeap();
            if (options.only.empty()) {
                if (!SaxParse(path, options, floorSeconds)) {
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
                const double start = now();
                ecu.reset();
                r.destroy = std::min(r.destroy, now() - start);
            }
            TrimHeap();
            coldCaches();
            const double start = now();
            ecu = reader.ReadFile(path.c_str(), "");
            const double readSeconds = now() - start;
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
        TrimHeap();
        coldCaches();
        const double start = now();
        const uint32_t length = Korvel::GetKLWriter().WriteToString(*ecu, text, "utf-8");
        const double writeSeconds = now() - start;
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
        const double start = now();
        ecu.reset();
        r.destroy = std::min(r.destroy, now() - start);
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
            r.outSax = BestSax(written, options, r.runs, ok);
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

}  // namespace ZeKLBench
