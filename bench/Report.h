// The targets the bench judges, and the report: the table of figures and a line per target.
#pragma once

#include "Measure.h"

#include <vector>

namespace ZeKLBench {

// A read within 1.5 times the empty-handler parse, a write within half the parse of its output
// and at 130 MB/s at least, a read's peak within 3 times the document and its model within 2
// times, and read and write times per MB within 20 % of each other across sizes.
constexpr double kReadOverFloorMax = 1.5;
constexpr double kWriteOverFloorMax = 0.5;
constexpr double kWriteMBsMin = 130.0;
constexpr double kPeakOverDocMax = 3.0;
constexpr double kModelOverDocMax = 2.0;
constexpr double kFlatnessMax = 1.2;

void PrintTable(const std::vector<Result>& results);

// Prints a line per target and returns whether every one passed; `broken` when a document
// could not be read or written at all.
bool PrintTargets(const std::vector<Result>& results, const Options& options, bool broken);

}  // namespace ZeKLBench
