// The parts of the file component that are the same on every platform; the system calls are in
// FilePosix.cpp and FileWindows.cpp.
#include "platform/File.h"

#include "platform/FileDetail.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <random>
#include <system_error>

namespace Korvel::Platform {

namespace {

constexpr char kTemporaryPrefix[] = ".zekl-";
constexpr char kTemporarySuffix[] = ".tmp";
constexpr std::size_t kReadChunk = std::size_t{64} << 10;

uint64_t Seed() {
    uint64_t seed = static_cast<uint64_t>(std::chrono::steady_clock::now().time_since_epoch().count());
    try {
        std::random_device device;
        seed ^= (static_cast<uint64_t>(device()) << 32) ^ device();
    } catch (...) {
        // The clock alone still differs from run to run; the name is created exclusively anyway.
    }
    return seed;
}

// splitmix64 over a process-wide counter: distinct names for every call, unguessable enough
// that nobody plants a file under the next one (the exclusive create refuses it if they do).
uint64_t NextRandom() {
    static std::atomic<uint64_t> state{Seed()};
    constexpr uint64_t kStep = 0x9E3779B97F4A7C15ull;
    uint64_t z = state.fetch_add(kStep) + kStep;
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ull;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBull;
    return z ^ (z >> 31);
}

std::string Hex(uint64_t value) {
    static const char kDigits[] = "0123456789abcdef";
    std::string text(16, '0');
    for (int index = 15; index >= 0; --index) {
        text[static_cast<std::size_t>(index)] = kDigits[value & 0xF];
        value >>= 4;
    }
    return text;
}

}  // namespace

namespace FileDetail {

std::string SystemReason(int code) {
    return std::generic_category().message(code);
}

std::string NotRegularReason(const char* what) {
    return std::string("not a regular file (") + what + ")";
}

std::string TemporaryName(unsigned long processId) {
    return kTemporaryPrefix + std::to_string(processId) + "-" + Hex(NextRandom()) + kTemporarySuffix;
}

// The process id in a name of the form ".zekl-<pid>-<hex>.tmp", or 0 when it has another form.
unsigned long TemporaryNameProcess(const std::string& name) {
    const std::size_t prefix = sizeof kTemporaryPrefix - 1;
    const std::size_t suffix = sizeof kTemporarySuffix - 1;
    if (name.size() < prefix + suffix + 3 || name.compare(0, prefix, kTemporaryPrefix) != 0 ||
        name.compare(name.size() - suffix, suffix, kTemporarySuffix) != 0) {
        return 0;
    }
    std::size_t at = prefix;
    unsigned long processId = 0;
    const std::size_t digitsFrom = at;
    while (at < name.size() && name[at] >= '0' && name[at] <= '9' && at - digitsFrom < 10) {
        processId = processId * 10 + static_cast<unsigned long>(name[at] - '0');
        ++at;
    }
    if (at == digitsFrom || at >= name.size() || name[at] != '-') {
        return 0;
    }
    ++at;
    const std::size_t end = name.size() - suffix;
    if (at == end) {
        return 0;
    }
    for (; at < end; ++at) {
        const char c = name[at];
        if (!((c >= '0' && c <= '9') || (c >= 'a' && c <= 'f'))) {
            return 0;
        }
    }
    return processId;
}

#ifdef _WIN32
constexpr char kSeparators[] = "/\\";
#else
constexpr char kSeparators[] = "/";
#endif

// The folder part of a path with its final separator; empty for a bare name.
std::string FolderOf(const std::string& path) {
    const std::size_t slash = path.find_last_of(kSeparators);
    return slash == std::string::npos ? std::string() : path.substr(0, slash + 1);
}

}  // namespace FileDetail

// ---------------------------------------------------------------------------------------------
// InputFile

InputFile::~InputFile() {
    Close();
}

bool InputFile::Refuse(OpenRefusal refusal, std::string reason) {
    Close();
    refusal_ = refusal;
    reason_ = std::move(reason);
    return false;
}

bool InputFile::ReadUpTo(std::size_t limit, std::string& bytes) {
    std::size_t left = limit;
    while (left > 0) {
        const std::size_t start = bytes.size();
        const std::size_t chunk = std::min(left, kReadChunk);
        bytes.resize(start + chunk);
        std::size_t count = 0;
        const bool read = Read(&bytes[start], chunk, count);
        bytes.resize(start + count);
        if (!read) {
            return false;
        }
        if (count == 0) {
            break;
        }
        left -= count;
    }
    return true;
}

bool ReadFilePrefix(const char* path, std::size_t limit, std::string& bytes, std::string& reason) {
    InputFile file;
    if (!file.Open(path) || !file.ReadUpTo(limit, bytes)) {
        reason = file.Reason();
        return false;
    }
    return true;
}

// ---------------------------------------------------------------------------------------------
// ReplacingFile

ReplacingFile::~ReplacingFile() {
    Discard();
}

bool ReplacingFile::Fail(std::string reason) {
    Discard();
    reason_ = std::move(reason);
    return false;
}

bool ReplaceFileContents(const char* target, const char* data, std::size_t size, std::string& reason) {
    ReplacingFile file;
    if (!file.Open(target) || !file.Write(data, size) || !file.Commit()) {
        reason = file.Reason();
        return false;
    }
    return true;
}

}  // namespace Korvel::Platform
