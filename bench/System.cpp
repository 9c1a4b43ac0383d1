#include "System.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <system_error>
#include <thread>
#include <vector>

#if defined(__unix__) || defined(__APPLE__)
#define ZEKL_BENCH_POSIX 1
#include <sys/mman.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>
#endif

#if defined(__GLIBC__)
#include <malloc.h>
#endif

namespace ZeKLBench {

namespace {

// Where ColdCaches leaves its sum, so that the compiler keeps the loop.
volatile unsigned char gCacheSink = 0;

std::size_t LastLevelCacheBytes() {
    long cache = 0;
#if defined(_SC_LEVEL3_CACHE_SIZE)
    cache = sysconf(_SC_LEVEL3_CACHE_SIZE);
    if (cache <= 0) {
        cache = sysconf(_SC_LEVEL2_CACHE_SIZE);
    }
#endif
    return cache > 0 ? static_cast<std::size_t>(cache) : 0;
}

uint64_t StatusKb(const char* key) {
    std::ifstream status("/proc/self/status");
    std::string line;
    const std::size_t keyLength = std::strlen(key);
    while (std::getline(status, line)) {
        if (line.compare(0, keyLength, key) == 0 && line.size() > keyLength && line[keyLength] == ':') {
            return std::strtoull(line.c_str() + keyLength + 1, nullptr, 10);
        }
    }
    return 0;
}

}  // namespace

double Now(bool cpuTime) {
#if defined(ZEKL_BENCH_POSIX)
    if (cpuTime) {
        timespec ts{};
        clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &ts);
        return static_cast<double>(ts.tv_sec) + static_cast<double>(ts.tv_nsec) * 1e-9;
    }
#else
    static_cast<void>(cpuTime);
#endif
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

// A large memset may bypass the cache; one write per line does not.
void ColdCaches() {
    static const std::size_t size =
        std::clamp<std::size_t>(2 * LastLevelCacheBytes(), std::size_t{64} << 20, std::size_t{512} << 20);
    static std::vector<unsigned char> buffer(size, 1);
    unsigned char sum = 0;
    for (std::size_t at = 0; at < buffer.size(); at += 64) {
        buffer[at] = static_cast<unsigned char>(buffer[at] + 1);
        sum = static_cast<unsigned char>(sum + buffer[at]);
    }
    gCacheSink = sum;
}

bool TrimHeap() {
#if defined(__GLIBC__)
    malloc_trim(0);
    return true;
#else
    return false;
#endif
}

bool ResidentKb(uint64_t& current, uint64_t& peak) {
    current = StatusKb("VmRSS");
    peak = StatusKb("VmHWM");
    return current > 0;
}

void ResetPeak() {
    if (FILE* clear = std::fopen("/proc/self/clear_refs", "w")) {
        std::fputs("5", clear);
        std::fclose(clear);
    }
}

std::string SelfPath() {
#if defined(ZEKL_BENCH_POSIX)
    char buffer[4096];
    const ssize_t n = readlink("/proc/self/exe", buffer, sizeof buffer - 1);
    return n > 0 ? std::string(buffer, static_cast<std::size_t>(n)) : std::string();
#else
    return std::string();
#endif
}

bool RunChild(const std::string& self, const std::string& arguments, std::string& output) {
#if defined(ZEKL_BENCH_POSIX)
    int fds[2];
    if (self.empty() || pipe(fds) != 0) {
        return false;
    }
    const pid_t pid = fork();
    if (pid < 0) {
        close(fds[0]);
        close(fds[1]);
        return false;
    }
    if (pid == 0) {
        dup2(fds[1], STDOUT_FILENO);
        close(fds[0]);
        close(fds[1]);
        execl(self.c_str(), self.c_str(), "--memory-child", arguments.c_str(), static_cast<char*>(nullptr));
        _exit(127);
    }
    close(fds[1]);
    char buffer[256];
    ssize_t n;
    while ((n = read(fds[0], buffer, sizeof buffer)) > 0) {
        output.append(buffer, static_cast<std::size_t>(n));
    }
    close(fds[0]);
    int status = 0;
    waitpid(pid, &status, 0);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
#else
    static_cast<void>(self);
    static_cast<void>(arguments);
    static_cast<void>(output);
    return false;
#endif
}

// A large model or output text pays it once per page; it explains why very large documents can
// cost more per MB than small ones whose memory the allocator reuses.
double FreshMemoryMsPerMB() {
#if defined(ZEKL_BENCH_POSIX)
    constexpr std::size_t kBytes = std::size_t{64} << 20;
    const double start = Now(false);
    void* block = mmap(nullptr, kBytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (block == MAP_FAILED) {
        return -1;
    }
    auto* bytes = static_cast<volatile char*>(block);
    for (std::size_t at = 0; at < kBytes; at += 4096) {
        bytes[at] = 1;
    }
    const double seconds = Now(false) - start;
    munmap(block, kBytes);
    return seconds * 1e3 / (static_cast<double>(kBytes) / 1e6);
#else
    return -1;
#endif
}

std::string CpuName() {
    std::ifstream cpuinfo("/proc/cpuinfo");
    std::string line;
    while (std::getline(cpuinfo, line)) {
        if (line.compare(0, 10, "model name") == 0) {
            const std::size_t colon = line.find(':');
            return colon == std::string::npos ? line : line.substr(colon + 2);
        }
    }
    return "unknown CPU";
}

std::string LoadAverage() {
    std::ifstream in("/proc/loadavg");
    std::string a, b, c;
    if (!(in >> a >> b >> c)) {
        return "unknown";
    }
    return a + " " + b + " " + c;
}

long ProcessorCount() {
    return static_cast<long>(std::thread::hardware_concurrency());
}

std::string MakeTemporaryFolder() {
    std::error_code error;
    const std::filesystem::path base = std::filesystem::temp_directory_path(error);
    if (error) {
        return std::string();
    }
#if defined(ZEKL_BENCH_POSIX)
    std::string pattern = (base / "zekl_bench.XXXXXX").string();
    return mkdtemp(pattern.data()) != nullptr ? pattern : std::string();
#else
    // Without mkdtemp: a name from the clock, made only if it is new.
    for (int attempt = 0; attempt < 100; ++attempt) {
        const auto tick = std::chrono::steady_clock::now().time_since_epoch().count();
        const std::filesystem::path folder = base / ("zekl_bench." + std::to_string(tick));
        if (std::filesystem::create_directory(folder, error)) {
            return folder.string();
        }
    }
    return std::string();
#endif
}

bool MakeFolder(const std::string& path) {
    std::error_code error;
    std::filesystem::create_directories(path, error);
    return !error;
}

bool RemoveFolder(const std::string& path) {
    std::error_code error;
    return std::filesystem::remove(path, error);
}

uint64_t FileSize(const std::string& path) {
    std::error_code error;
    const std::uintmax_t size = std::filesystem::file_size(path, error);
    return error ? 0 : static_cast<uint64_t>(size);
}

}  // namespace ZeKLBench
