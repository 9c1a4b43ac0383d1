#include <ZeKL/Diff.h>

#include "diff/ZDiffer.h"

namespace Korvel {

const char* DiffChangeName(DiffChange change) {
    switch (change) {
        case DiffChange::Added:
            return "added";
        case DiffChange::Removed:
            return "removed";
        case DiffChange::Changed:
            return "changed";
        case DiffChange::Moved:
            return "moved";
    }
    return "";
}

bool DiffEcus(const IEcu& before, const IEcu& after, const DiffOptions& options,
              std::vector<DiffEntry>& entries) {
    try {
        entries.clear();
        ZDiffer(options, entries).Run(before, after);
        return true;
    } catch (...) {
        entries.clear();
        return false;
    }
}

}  // namespace Korvel
