// What changed between two descriptions, item by item (an addition to the original design).
// Items are matched by their ids (instances, conversions, parameters within their message,
// text-table entries by value, NRCs by code), so a reordered or reformatted document is equal
// to the original unless the order is asked about.
#pragma once

#include <ZeKL/IEcu.h>
#include <ZeKL/ItemPath.h>
#include <ZeKL/Types.h>

#include <string>
#include <vector>

namespace Korvel {

enum class DiffChange : int32_t {
    Added = 0,    // only the new description has the item
    Removed = 1,  // only the old one has it
    Changed = 2,  // both have it; one attribute differs
    Moved = 3,    // both have it at another place among its siblings (DiffOptions::order)
};

// "added", "removed", "changed" or "moved"; empty for any other value.
ZEKL_API const char* DiffChangeName(DiffChange change);

// One difference.
struct DiffEntry {
    DiffChange change = DiffChange::Changed;
    // "protocol", "nrc", "conversion", "entry" (of a text table), "instance", "message" or
    // "parameter".
    std::string item;
    ItemPath path;          // the item (empty for the protocol)
    std::string attribute;  // the attribute that differs ("bitLen", "factor", "text", ...),
                            // "position" for a move; empty for an added or removed item
    std::string before;     // its old value (a position counts from 0); empty when added
    std::string after;      // its new value; empty when removed
};

struct DiffOptions {
    // Report also the items whose place among their siblings changed: the fewest items that,
    // moved, give the new order. Off: the order of items is not a difference.
    bool order = false;
};

// The differences that turn `before` into `after`, in a fixed order: protocol, NRCs,
// conversions (with their entries), then instances in the old description's order (each with
// its messages and parameters) and the added instances in the new one's. Values are compared
// by meaning where the text may differ in form only: numbers of factors and offsets, a
// parameter value's byte image, semantics words in any order. False (with `entries` empty) on
// failure, which only allocation can cause.
ZEKL_API bool DiffEcus(const IEcu& before, const IEcu& after, const DiffOptions& options,
                       std::vector<DiffEntry>& entries);

}  // namespace Korvel
