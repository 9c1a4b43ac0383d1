// The lint's rules: stable ids, severities and summaries in one place, in the order their
// findings come.
#pragma once

#include <ZeKL/Lint.h>

#include <cstddef>

namespace Korvel {

enum class ZRule : std::size_t {
    Read,
    NumberText,
    TypeUnknown,
    TypeName,
    TypeLength,
    SemanticsWord,
    ConstValue,
    ConversionMissing,
    Overlap,
    Hole,
    RequestSid,
    ResponseSid,
    NegativeResponse,
    AmbiguousRequest,
    ConversionUnused,
    ConversionKind,
    FactorZero,
    TableValue,
    NrcStandard,
    Count,
};

// The rule's id, severity and summary.
const LintRule& RuleOf(ZRule rule);

}  // namespace Korvel
