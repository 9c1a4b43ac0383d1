#include "lint/LintRules.h"

namespace Korvel {

namespace {

constexpr LintRule kRules[] = {
    {"read", LintSeverity::Error, "an ERROR or FATAL message of the read"},
    {"number-text", LintSeverity::Error,
     "a factor, offset, bitPos, bitLen or nrc text that is not a number, read as part of one or as 0"},
    {"type-unknown", LintSeverity::Error, "a parameter type name that reads as no type"},
    {"type-name", LintSeverity::Warning,
     "a parameter type name that is not one of the ten names and reads as one by its first letters, or "
     "'undefined', which reads as 'unsigned'"},
    {"type-length", LintSeverity::Error, "an fp parameter not 32 bits long, a double not 64"},
    {"semantics-word", LintSeverity::Warning,
     "a semantics word other than SID, XID, CONST, MOTOROLA, GAP, SID_NR"},
    {"const-value", LintSeverity::Error,
     "a CONST parameter whose value has no byte image for its type and length, or is a number only in part"},
    {"conversion-missing", LintSeverity::Error, "a conversion id that names no conversion"},
    {"overlap", LintSeverity::Error, "parameters of one message that share bits (GAP parameters included)"},
    {"hole", LintSeverity::Warning, "bits of a message before its last parameter that no parameter covers"},
    {"request-sid", LintSeverity::Error,
     "an instance without a request, or a request without a CONST SID parameter"},
    {"response-sid", LintSeverity::Error,
     "a positive response without a SID parameter, or whose SID is not the request's plus 0x40"},
    {"negative-response", LintSeverity::Error, "a negative response not shaped 7F, request SID, NRC"},
    {"ambiguous-request", LintSeverity::Error,
     "two instances whose requests have the same constants, so that a request cannot be told apart"},
    {"conversion-unused", LintSeverity::Warning, "a conversion that no parameter uses"},
    {"conversion-kind", LintSeverity::Warning,
     "a conversion named as a formula that has table entries, or a value table without entries"},
    {"factor-zero", LintSeverity::Warning, "a formula conversion with factor 0"},
    {"table-value", LintSeverity::Warning, "text-table values that are the same number (\"1\" and \"01\")"},
    {"nrc-standard", LintSeverity::Info, "the NRC table lacks codes of the protocol's standard table"},
};

static_assert(sizeof(kRules) / sizeof(kRules[0]) == static_cast<std::size_t>(ZRule::Count),
              "one entry per rule");

}  // namespace

const LintRule& RuleOf(ZRule rule) {
    return kRules[static_cast<std::size_t>(rule)];
}

}  // namespace Korvel
