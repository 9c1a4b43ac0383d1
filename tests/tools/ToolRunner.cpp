#include "ToolRunner.h"

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

#ifndef ZEKL_TOOL
#error "ZEKL_TOOL must name the zekl binary under test"
#endif

namespace zekl_test {

std::string ShellQuoted(const std::string& word) {
    std::string quoted = "'";
    for (char c : word) {
        if (c == '\'') {
            quoted += "'\\''";
        } else {
            quoted += c;
        }
    }
    return quoted + "'";
}

namespace {

// Runs `command` (a shell command line without redirections of its own output) and captures
// what it writes.
ToolResult Capture(const std::string& command, const std::string& inputPath, int seconds) {
    TempDir capture;
    const std::string outPath = capture.Path("stdout");
    const std::string errPath = capture.Path("stderr");
    const std::string line = "timeout -s KILL " + std::to_string(seconds) + " " + command + " <" +
                             ShellQuoted(inputPath) + " >" + ShellQuoted(outPath) + " 2>" +
                             ShellQuoted(errPath);
    const int status = std::system(line.c_str());
    ToolResult result;
    result.exitCode = (status != -1 && WIFEXITED(status)) ? WEXITSTATUS(status) : -1;
    result.out = ReadBytes(outPath);
    result.err = ReadBytes(errPath);
    return result;
}

}  // namespace

ToolResult RunTool(const std::vector<std::string>& args, int seconds) {
    return RunToolWithInput(args, "/dev/null", seconds);
}

ToolResult RunToolWithInput(const std::vector<std::string>& args, const std::string& inputPath, int seconds) {
    std::string command = ShellQuoted(ZEKL_TOOL);
    for (const std::string& arg : args) {
        command += " " + ShellQuoted(arg);
    }
    return Capture(command, inputPath, seconds);
}

ToolResult RunShell(const std::string& commandLine, int seconds) {
    return Capture("sh -c " + ShellQuoted(commandLine), "/dev/null", seconds);
}

TempDir::TempDir() {
    static std::atomic<unsigned> counter{0};
    const std::filesystem::path root =
        std::filesystem::temp_directory_path() /
        ("zekl_tool_test_" + std::to_string(::getpid()) + "_" + std::to_string(counter++));
    std::filesystem::create_directories(root);
    root_ = root.string();
}

TempDir::~TempDir() {
    std::error_code ignored;
    std::filesystem::remove_all(root_, ignored);
}

std::string TempDir::Path(const std::string& name) const {
    return root_ + "/" + name;
}

std::string ExamplePath(const std::string& name) {
    return std::string(ZEKL_EXAMPLES_DIR) + "/" + name;
}

std::string DataPath(const std::string& name) {
    return std::string(ZEKL_TEST_DATA_DIR) + "/tools/" + name;
}

std::string ReadBytes(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream content;
    content << file.rdbuf();
    return content.str();
}

void WriteBytes(const std::string& path, const std::string& bytes) {
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file << bytes;
    if (!file) {
        throw std::runtime_error("cannot write " + path);
    }
}

bool FileExists(const std::string& path) {
    return std::filesystem::exists(path);
}

void MakeFifo(const std::string& path) {
    if (::mkfifo(path.c_str(), 0600) != 0) {
        throw std::runtime_error("cannot make the FIFO " + path);
    }
}

unsigned FileKind(const std::string& path) {
    struct stat info {};
    if (::lstat(path.c_str(), &info) != 0) {
        return 0;
    }
    return static_cast<unsigned>(info.st_mode & S_IFMT);
}

std::vector<std::string> Lines(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    std::string line;
    while (std::getline(stream, line)) {
        lines.push_back(line);
    }
    return lines;
}

std::vector<std::string> Cells(const std::string& line) {
    std::vector<std::string> cells;
    size_t pos = 0;
    while (pos < line.size()) {
        const size_t gap = line.find("  ", pos);
        cells.push_back(line.substr(pos, gap == std::string::npos ? std::string::npos : gap - pos));
        if (gap == std::string::npos) {
            break;
        }
        pos = line.find_first_not_of(' ', gap);
    }
    return cells;
}

std::vector<std::string> Row(const std::string& table, const std::string& key) {
    for (const std::string& line : Lines(table)) {
        std::vector<std::string> cells = Cells(line);
        if (!cells.empty() && cells[0] == key) {
            return cells;
        }
    }
    return {};
}

}  // namespace zekl_test
