#include "Output.h"

#include <map>

#include "Document.h"

namespace zekl {

namespace {

std::string Plural(size_t count, const char* one, const char* many) {
    return std::to_string(count) + " " + (count == 1 ? one : many);
}

// Attributes whose values are texts a person typed; they are quoted, numbers are not.
bool IsTextAttribute(const std::string& attribute) {
    return attribute == "text" || attribute == "type" || attribute == "unit" || attribute == "value" ||
           attribute == "semantics" || attribute == "convId";
}

std::string Value(const std::string& attribute, const std::string& value) {
    return IsTextAttribute(attribute) ? "'" + value + "'" : value;
}

// What the entry is about, below its instance when it has one: "NRC 16", "CONVERSION Id",
// "CONVERSION Id MAP 3", "RESPONSE", "RESPONSE/EngineSpeed", "protocol".
std::string Subject(const Korvel::DiffEntry& entry) {
    const Korvel::ItemPath& path = entry.path;
    if (entry.item == "protocol") {
        return "protocol";
    }
    if (!path.nrc.empty()) {
        return "NRC " + path.nrc;
    }
    if (!path.conversion.empty()) {
        return "CONVERSION " + path.conversion + (path.entry.empty() ? "" : " MAP " + path.entry);
    }
    if (entry.item == "instance") {
        return "INSTANCE " + path.instance;
    }
    return path.message + (entry.item == "parameter" ? "/" + path.parameter : "");
}

std::string DifferenceLine(const Korvel::DiffEntry& entry) {
    switch (entry.change) {
        case Korvel::DiffChange::Added:
            return "+ " + Subject(entry);
        case Korvel::DiffChange::Removed:
            return "- " + Subject(entry);
        case Korvel::DiffChange::Moved:
            return "> " + Subject(entry) + " position: " + entry.before + " -> " + entry.after;
        case Korvel::DiffChange::Changed:
            break;
    }
    return "~ " + Subject(entry) + " " + entry.attribute + ": " + Value(entry.attribute, entry.before) +
           " -> " + Value(entry.attribute, entry.after);
}

}  // namespace

FindingCounts CountFindings(const std::vector<Korvel::LintFinding>& findings) {
    FindingCounts counts;
    for (const Korvel::LintFinding& finding : findings) {
        switch (finding.severity) {
            case Korvel::LintSeverity::Error:
                ++counts.errors;
                break;
            case Korvel::LintSeverity::Warning:
                ++counts.warnings;
                break;
            case Korvel::LintSeverity::Info:
                ++counts.infos;
                break;
        }
    }
    return counts;
}

std::string FindingsText(const std::string& path, const std::vector<Korvel::LintFinding>& findings) {
    std::string text;
    for (const Korvel::LintFinding& finding : findings) {
        const std::string item = Korvel::ItemPathText(finding.path);
        text += PlacedLine(path, finding.line, finding.column,
                           std::string(Korvel::LintSeverityName(finding.severity)) + ": " +
                               (item.empty() ? "" : item + ": ") + OneLine(finding.text) + " [" +
                               finding.rule + "]");
    }
    if (findings.empty()) {
        return text + path + ": clean: no findings\n";
    }
    const FindingCounts counts = CountFindings(findings);
    return text + path + ": " + Plural(counts.errors, "error", "errors") + ", " +
           Plural(counts.warnings, "warning", "warnings") + ", " + Plural(counts.infos, "info", "infos") +
           "\n";
}

Json FindingsJson(const std::string& path, bool read, const std::string& severity, bool failed,
                  const std::vector<Korvel::LintFinding>& findings) {
    const FindingCounts counts = CountFindings(findings);
    Json json;
    json["file"] = path;
    json["read"] = read;
    json["severity"] = severity;
    json["failed"] = failed;
    json["counts"] = {{"error", counts.errors}, {"warning", counts.warnings}, {"info", counts.infos}};
    json["findings"] = Json::array();
    for (const Korvel::LintFinding& finding : findings) {
        json["findings"].push_back({{"rule", finding.rule},
                                    {"severity", Korvel::LintSeverityName(finding.severity)},
                                    {"line", PlaceNumber(finding.line)},
                                    {"column", PlaceNumber(finding.column)},
                                    {"path", PathJson(finding.path)},
                                    {"text", finding.text}});
    }
    return json;
}

std::string DifferencesText(const std::vector<Korvel::DiffEntry>& entries) {
    std::string text;
    // Instances in the order they first appear, each with its entries.
    std::vector<std::string> order;
    std::map<std::string, std::vector<const Korvel::DiffEntry*>> byInstance;
    for (const Korvel::DiffEntry& entry : entries) {
        if (entry.path.instance.empty()) {
            text += DifferenceLine(entry) + "\n";
            continue;
        }
        auto& list = byInstance[entry.path.instance];
        if (list.empty()) {
            order.push_back(entry.path.instance);
        }
        list.push_back(&entry);
    }
    for (const std::string& instance : order) {
        bool heading = false;
        for (const Korvel::DiffEntry* entry : byInstance[instance]) {
            if (entry->item == "instance") {
                text += DifferenceLine(*entry) + "\n";
                continue;
            }
            if (!heading) {
                text += "INSTANCE " + instance + "\n";
                heading = true;
            }
            text += "  " + DifferenceLine(*entry) + "\n";
        }
    }
    if (entries.empty()) {
        return "no differences\n";
    }
    return text + Plural(entries.size(), "difference", "differences") + "\n";
}

Json DifferencesJson(const std::string& before, const std::string& after,
                     const std::vector<Korvel::DiffEntry>& entries) {
    Json json;
    json["before"] = before;
    json["after"] = after;
    json["equal"] = entries.empty();
    json["differences"] = Json::array();
    for (const Korvel::DiffEntry& entry : entries) {
        Json item = {{"change", Korvel::DiffChangeName(entry.change)},
                     {"item", entry.item},
                     {"path", PathJson(entry.path)}};
        if (!entry.attribute.empty()) {
            item["attribute"] = entry.attribute;
            item["before"] = entry.before;
            item["after"] = entry.after;
        }
        json["differences"].push_back(std::move(item));
    }
    return json;
}

std::string PlacedLine(const std::string& path, uint32_t line, uint32_t column, const std::string& rest) {
    std::string text = path;
    if (line != 0) {
        text += ':' + std::to_string(line) + ':' + std::to_string(column);
    }
    return text + ": " + rest + "\n";
}

}  // namespace zekl
