// Runs the built zekl binary as a user would and captures what it prints.
#pragma once

#include <cstdlib>
#include <string>
#include <vector>

namespace zekl_test {

struct ToolResult {
    int exitCode = -1;
    std::string out;  // standard output, byte for byte
    std::string err;  // standard error
};

// Exit code of a run that was killed because it took longer than its time limit.
constexpr int kTimedOut = 137;

// Runs zekl with the arguments and standard input from /dev/null; standard output and error go
// to temporary files. A run that takes longer than `seconds` is killed and gives kTimedOut, so
// that a tool that hangs fails its test instead of stopping the suite.
ToolResult RunTool(const std::vector<std::string>& args, int seconds = 60);
// The same with standard input read from a file.
ToolResult RunToolWithInput(const std::vector<std::string>& args, const std::string& inputPath,
                            int seconds = 60);

// Runs a shell command line (sh -c) with standard input from /dev/null and captures its output
// like RunTool; killed after `seconds`.
ToolResult RunShell(const std::string& commandLine, int seconds = 60);
// A word quoted for the shell.
std::string ShellQuoted(const std::string& word);

// A fresh directory removed with its content when the object dies.
class TempDir {
public:
    TempDir();
    ~TempDir();
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;
    std::string Path(const std::string& name) const;

private:
    std::string root_;
};

std::string ExamplePath(const std::string& name);
std::string DataPath(const std::string& name);  // below tests/data/tools
std::string ReadBytes(const std::string& path);
void WriteBytes(const std::string& path, const std::string& bytes);
bool FileExists(const std::string& path);
// Makes a FIFO at the path (nobody writes to it).
void MakeFifo(const std::string& path);
// The kind of what the path names, links not followed: S_IFREG, S_IFIFO, S_IFLNK, ...
unsigned FileKind(const std::string& path);

// The lines of a text, without their line ends.
std::vector<std::string> Lines(const std::string& text);

// Cells of one line of a table printed by zekl (columns are at least two blanks apart).
std::vector<std::string> Cells(const std::string& line);

// The row of a zekl table whose first cell is `key`; empty when there is none.
std::vector<std::string> Row(const std::string& table, const std::string& key);

}  // namespace zekl_test

// Ends the test when a program it needs is missing: a skip on a developer's machine, a
// failure in CI (CI=true), where .ci/run installs every one of them.
#define ZEKL_REQUIRE_PROGRAM(found, what)                  \
    do {                                                   \
        if (!(found)) {                                    \
            if (std::getenv("CI") != nullptr) {            \
                FAIL() << (what) << " is missing";         \
            }                                              \
            GTEST_SKIP() << (what) << " is not installed"; \
        }                                                  \
    } while (false)
