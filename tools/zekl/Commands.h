// The zekl commands. Each takes the words after its name and returns the exit status:
// 0 success, 1 a document problem; usage mistakes are thrown as UsageError (status 2).
#pragma once

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
