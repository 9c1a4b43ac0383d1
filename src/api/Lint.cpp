#include <ZeKL/Lint.h>

#include "lint/LintRules.h"
#include "lint/ZLintReader.h"
#include "lint/ZLinter.h"

namespace Korvel {

const char* LintSeverityName(LintSeverity severity) {
    switch (severity) {
        case LintSeverity::Error:
            return "error";
        case LintSeverity::Warning:
            return "warning";
        case LintSeverity::Info:
            return "info";
    }
    return "";
}

std::vector<LintRule> LintRules() {
    try {
        std::vector<LintRule> rules;
        for (std::size_t i = 0; i < static_cast<std::size_t>(ZRule::Count); ++i) {
            rules.push_back(RuleOf(static_cast<ZRule>(i)));
        }
        return rules;
    } catch (...) {
        return {};
    }
}

bool LintEcu(const IEcu& ecu, std::vector<LintFinding>& findings) {
    try {
        findings.clear();
        ZLinter(ecu, nullptr, findings).Run();
        return true;
    } catch (...) {
        findings.clear();
        return false;
    }
}

bool LintFile(const char* path, std::vector<LintFinding>& findings) {
    try {
        return ZLintReader().LintFile(path, findings);
    } catch (...) {
        findings.clear();
        return false;
    }
}

bool LintText(const std::string& text, std::vector<LintFinding>& findings) {
    try {
        return ZLintReader().LintText(text, findings);
    } catch (...) {
        findings.clear();
        return false;
    }
}

}  // namespace Korvel
