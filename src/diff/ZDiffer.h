// The comparison of two models, item by item, matched by ids. It walks the old model once and
// looks each item up in the new one by its key (the containers' own indexes), so it costs about
// one lookup per item: far less than reading either document.
#pragma once

#include <ZeKL/Diff.h>
#include <ZeKL/IEcu.h>

#include <cstdint>
#include <string>
#include <vector>

namespace Korvel {

class ZDiffer {
public:
    ZDiffer(const DiffOptions& options, std::vector<DiffEntry>& entries);

    // Appends the differences that turn `before` into `after`.
    void Run(const IEcu& before, const IEcu& after);

private:
    void Add(DiffChange change, const char* item, const ItemPath& path, const char* attribute = "",
             std::string before = std::string(), std::string after = std::string());
    void Changed(const char* item, const ItemPath& path, const char* attribute, std::string before,
                 std::string after) {
        Add(DiffChange::Changed, item, path, attribute, std::move(before), std::move(after));
    }
    // With DiffOptions::order: of the items both sides have, listed by their old positions with
    // their new ones, the fewest whose moving gives the new order are reported as moved.
    struct Common {
        uint32_t before;
        uint32_t after;
        ItemPath path;
    };
    void ReportMoves(const char* item, const std::vector<Common>& common);

    void CompareNrcs(const IEcu& before, const IEcu& after);
    void CompareConversions(const IEcu& before, const IEcu& after);
    void CompareConversion(const IConversion& before, const IConversion& after, const ItemPath& path);
    void CompareInstances(const IEcu& before, const IEcu& after);
    void CompareInstance(const IInstance& before, const IInstance& after, const ItemPath& path);
    void CompareMessage(const IMessage* before, const IMessage* after, const ItemPath& path);
    void CompareParam(const IParam& before, const IParam& after, const ItemPath& path);

    DiffOptions options_;
    std::vector<DiffEntry>& entries_;
};

}  // namespace Korvel
