// The bench's command line.
#pragma once

#include "Measure.h"

namespace ZeKLBench {

void PrintUsage();
// False for an unknown option or a bad value.
bool ParseOptions(int argc, char** argv, Options& options);

}  // namespace ZeKLBench
