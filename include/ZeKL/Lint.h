// Semantic checks of a description beyond what the reader checks: parameters that overlap or
// leave holes, constants without a byte image, conversions that name nothing or are never used,
// type names and semantics words the reader reads by accident, requests and responses whose
// service ids do not fit, requests that cannot be told apart, and more (an addition to the
// original design). Every rule has a stable id; docs/lint.md describes each with an example.
#pragma once

#include <ZeKL/IEcu.h>
#include <ZeKL/ItemPath.h>
#include <ZeKL/Types.h>

#include <string>
#include <vector>

namespace Korvel {

enum class LintSeverity : int32_t {
    Error = 0,    // the description is wrong: a tester using it misreads or sends wrong bytes
    Warning = 1,  // very likely a mistake, or it works only by accident
    Info = 2,     // worth knowing, often on purpose
};

// "error", "warning" or "info"; empty for any other value.
ZEKL_API const char* LintSeverityName(LintSeverity severity);

// One finding of one rule.
struct LintFinding {
    std::string rule;  // the rule's stable id, e.g. "overlap"
    LintSeverity severity = LintSeverity::Error;
    std::string text;     // what is wrong, in one line
    ItemPath path;        // the item it concerns; empty for the ECU as a whole
    uint32_t line = 0;    // where the item's element starts; 0 when not known (LintEcu)
    uint32_t column = 0;  // column of its "<", in characters from 1; 0 when not known
};

// One rule: its id, the severity of its findings and what it checks.
struct LintRule {
    const char* id;
    LintSeverity severity;
    const char* summary;
};

// Every rule, in the order its findings come (static texts). Empty on allocation failure.
ZEKL_API std::vector<LintRule> LintRules();

// Lints a model, whoever made it. A model keeps no positions, so line and column are 0, and
// the rules that look at the document's own texts ("read", "number-text") find nothing.
// Findings come in the order of the rules' walk: instances, conversions, the NRC table.
// False (with `findings` empty) on failure, which only allocation can cause.
ZEKL_API bool LintEcu(const IEcu& ecu, std::vector<LintFinding>& findings);

// Reads the document (as IKLReader::ReadFile with an empty encoding) recording where each
// item's element starts, and lints what it read. The read's ERROR and FATAL messages are
// findings of the rule "read", with their texts as the reader gave them. Findings are in
// document order. False when the document was refused or the path is null (`findings` then
// holds the read's messages that say why) or on allocation failure.
ZEKL_API bool LintFile(const char* path, std::vector<LintFinding>& findings);

// The same for a document held in memory (as IKLReader::ReadText).
ZEKL_API bool LintText(const std::string& text, std::vector<LintFinding>& findings);

}  // namespace Korvel
