// The zekl commands. Each takes the words after its name and returns the exit status:
// 0 success, 1 a document problem; usage mistakes are thrown as UsageError (status 2).
#pragma once

#include <ZeKL/Lint.h>

#include <cstdint>
#include <string>
#include <vector>

namespace zekl {

using Words = std::vector<std::string>;

constexpr int ExitSuccess = 0;
constexpr int ExitDocumentProblem = 1;
constexpr int ExitUsage = 2;

int RunVersion(const Words& args);
int RunNew(const Words& args);
int RunInfo(const Words& args);
int RunCheck(const Words& args);
int RunShow(const Words& args);
int RunConvert(const Words& args);
int RunDecode(const Words& args);
int RunEncode(const Words& args);
int RunLint(const Words& args);
int RunDiff(const Words& args);

// The work of the commands, apart from their arguments.
int CheckDocument(const std::string& path, int32_t level);
// Fails (1) when a finding is at or above the threshold.
int LintDocument(const std::string& path, Korvel::LintSeverity threshold, bool json);
int DiffDocuments(const std::string& before, const std::string& after, bool order, bool json);

// "PATH:LINE:COLUMN: REST\n", or "PATH: REST\n" when the line is 0 (no place known).
std::string PlacedLine(const std::string& path, uint32_t line, uint32_t column, const std::string& rest);

struct Command {
    const char* name;
    const char* summary;
    int (*run)(const Words& args);
};

// Every command, in the order the overall help lists them.
const std::vector<Command>& AllCommands();

// The tool's overall help text.
std::string OverallHelp();

}  // namespace zekl
