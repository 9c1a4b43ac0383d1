// What the platform parts of the file component (FilePosix.cpp, FileWindows.cpp) share with
// its common part: fixed reasons and the names of temporary files.
#pragma once

#include <cstddef>
#include <string>

namespace Korvel::Platform::FileDetail {

inline constexpr char kNoFileName[] = "no file name";
inline constexpr char kNotOpen[] = "the file is not open";
inline constexpr char kDanglingLink[] = "a symbolic link to nothing (what it points to does not exist)";
inline constexpr char kLinkLoop[] = "a symbolic link loop";
// One system call moves at most this much; larger requests take several.
inline constexpr std::size_t kMaxTransfer = std::size_t{1} << 30;
// Tries before giving up on finding an unused temporary name (each one is random).
inline constexpr int kTemporaryAttempts = 16;

// The text of an errno value ("No space left on device").
std::string SystemReason(int code);
// "not a regular file (<what>)".
std::string NotRegularReason(const char* what);
// ".zekl-<process id>-<16 hex digits>.tmp", another random part at every call.
std::string TemporaryName(unsigned long processId);
// The process id in a name of the form TemporaryName makes, or 0 for any other name.
unsigned long TemporaryNameProcess(const std::string& name);
// The folder part of a path with its final separator; empty for a bare name.
std::string FolderOf(const std::string& path);

}  // namespace Korvel::Platform::FileDetail
