// Writing the tool's own output files.
#pragma once

#include <cstdio>
#include <string>

namespace zekl {

// Writes the bytes to a temporary file beside `path` and renames it over `path`, so that a
// failed write never leaves a truncated file. False with the system's reason on failure.
bool WriteFileReplacing(const std::string& path, const std::string& bytes, std::string& reason);

// True when the stream is an interactive terminal.
bool IsTerminal(std::FILE* stream);

}  // namespace zekl
