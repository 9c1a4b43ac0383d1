// The README's reference of the tool says what the tool's help says: the same commands with the
// same summaries, and every form of every command as its help gives it.
#include <gtest/gtest.h>

#include <map>

#include "ToolRunner.h"

using zekl_test::Cells;
using zekl_test::Lines;
using zekl_test::RunTool;

namespace {

// The part of the README about the tool: from "## The zekl tool" to the next "## " heading.
std::string ToolSection() {
    const std::string readme = zekl_test::ReadBytes(std::string(ZEKL_SOURCE_DIR) + "/README.md");
    const std::size_t begin = readme.find("\n## The zekl tool\n");
    if (begin == std::string::npos) {
        return std::string();
    }
    const std::size_t end = readme.find("\n## ", begin + 1);
    return readme.substr(begin, end == std::string::npos ? std::string::npos : end - begin);
}

// Command name to summary, from the rows "| `zekl NAME` | SUMMARY |" of the README's table.
std::map<std::string, std::string> ReadmeCommands() {
    std::map<std::string, std::string> commands;
    for (const std::string& line : Lines(ToolSection())) {
        const std::string start = "| `zekl ";
        const std::size_t nameEnd = line.find("` | ");
        if (line.rfind(start, 0) != 0 || nameEnd == std::string::npos || line.size() < 2 ||
            line.substr(line.size() - 2) != " |") {
            continue;
        }
        commands[line.substr(start.size(), nameEnd - start.size())] =
            line.substr(nameEnd + 4, line.size() - 2 - nameEnd - 4);
    }
    return commands;
}

// Command name to summary, from 'zekl --help'.
std::map<std::string, std::string> HelpCommands() {
    std::map<std::string, std::string> commands;
    bool inside = false;
    for (const std::string& line : Lines(RunTool({"--help"}).out)) {
        if (line == "Commands:") {
            inside = true;
        } else if (inside && line.rfind("  ", 0) == 0) {
            const std::vector<std::string> cells = Cells(line.substr(2));
            commands[cells.at(0)] = cells.size() > 1 ? cells[1] : "";
        } else if (inside) {
            break;
        }
    }
    return commands;
}

// The forms of a command, from the "Usage:" lines of its help.
std::vector<std::string> UsageLines(const std::string& command) {
    std::vector<std::string> forms;
    for (const std::string& line : Lines(RunTool({"help", command}).out)) {
        if (line.rfind("Usage: ", 0) == 0 || (!forms.empty() && line.rfind("       zekl ", 0) == 0)) {
            forms.push_back(line.substr(7));
        } else if (!forms.empty()) {
            break;
        }
    }
    return forms;
}

// The names of each option in the "Options:" list of a command's help ("-l", "--level").
std::vector<std::vector<std::string>> OptionNames(const std::string& command) {
    std::vector<std::vector<std::string>> options;
    bool inside = false;
    for (const std::string& line : Lines(RunTool({"help", command}).out)) {
        if (line == "Options:") {
            inside = true;
        } else if (inside && line.rfind("  -", 0) == 0) {
            std::vector<std::string> names;
            std::size_t at = 2;
            while (at < line.size() && line[at] == '-') {
                const std::size_t end = line.find_first_of(", ", at);
                names.push_back(line.substr(at, end - at));
                at = line.find_first_not_of(", ", end);
            }
            options.push_back(names);
        } else if (inside && !line.empty() && line[0] != ' ') {
            break;
        }
    }
    return options;
}

bool NamesWord(const std::string& text, const std::string& word) {
    for (std::size_t at = text.find(word); at != std::string::npos; at = text.find(word, at + 1)) {
        const std::size_t end = at + word.size();
        if (end == text.size() ||
            !(std::isalnum(static_cast<unsigned char>(text[end])) || text[end] == '-')) {
            return true;
        }
    }
    return false;
}

}  // namespace

TEST(Readme, CommandTableHasTheSummariesOfTheHelp) {
    const std::map<std::string, std::string> help = HelpCommands();
    ASSERT_EQ(help.size(), 10u);
    EXPECT_EQ(ReadmeCommands(), help);
}

TEST(Readme, ShowsEveryFormOfEveryCommand) {
    const std::string section = ToolSection();
    for (const auto& command : HelpCommands()) {
        const std::vector<std::string> forms = UsageLines(command.first);
        ASSERT_FALSE(forms.empty()) << command.first;
        for (const std::string& form : forms) {
            EXPECT_NE(section.find("`" + form + "`"), std::string::npos) << form;
        }
    }
}

// The forms name every option of the command, so that the README, which shows them, does too.
TEST(Readme, FormsNameEveryOption) {
    for (const auto& command : HelpCommands()) {
        std::string forms;
        for (const std::string& form : UsageLines(command.first)) {
            forms += form + "\n";
        }
        for (const std::vector<std::string>& names : OptionNames(command.first)) {
            if (names.back() == "--help") {
                continue;
            }
            bool named = false;
            for (const std::string& name : names) {
                named = named || NamesWord(forms, name);
            }
            EXPECT_TRUE(named) << command.first << ": " << names.back();
        }
    }
}
