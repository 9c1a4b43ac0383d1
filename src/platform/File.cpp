#include "platform/File.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <random>
#include <system_error>

#ifdef _WIN32
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

#include "platform/Transcode.h"
#else
#include <dirent.h>
#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace Korvel::Platform {

namespace {

constexpr char kTemporaryPrefix[] = ".zekl-";
constexpr char kTemporarySuffix[] = ".tmp";
constexpr char kNoFileName[] = "no file name";
constexpr char kNotOpen[] = "the file is not open";
constexpr char kDanglingLink[] = "a symbolic link to nothing (what it points to does not exist)";
constexpr char kLinkLoop[] = "a symbolic link loop";
// One system call moves at most this much; larger requests take several.
constexpr std::size_t kMaxTransfer = std::size_t{1} << 30;
constexpr std::size_t kReadChunk = std::size_t{64} << 10;
// Tries before giving up on finding an unused temporary name (each one is random).
constexpr int kTemporaryAttempts = 16;

std::string SystemReason(int code) {
    return std::generic_category().message(code);
}

std::string NotRegularReason(const char* what) {
    return std::string("not a regular file (") + what + ")";
}

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

#ifdef _WIN32

static_assert(sizeof(XMLCh) == sizeof(wchar_t), "xerces' UTF-16 units are wide characters on Windows");

// Throws TranscodeError for a name that is not UTF-8.
std::wstring Wide(const std::string& path) {
    const WideString wide = Utf8ToUtf16(path);
    return std::wstring(reinterpret_cast<const wchar_t*>(wide.data()), wide.size());
}

std::string Narrow(const std::wstring& path) {
    return Utf16ToUtf8(reinterpret_cast<const XMLCh*>(path.data()), path.size());
}

std::string WindowsReason(DWORD code) {
    std::string text = std::system_category().message(static_cast<int>(code));
    while (!text.empty() &&
           (text.back() == '\n' || text.back() == '\r' || text.back() == ' ' || text.back() == '.')) {
        text.pop_back();
    }
    return text;
}

constexpr char kInvalidName[] = "the file name is not valid UTF-8";

bool ProcessIsGone(unsigned long processId) {
    HANDLE process = ::OpenProcess(SYNCHRONIZE, FALSE, static_cast<DWORD>(processId));
    if (process == nullptr) {
        return ::GetLastError() == ERROR_INVALID_PARAMETER;
    }
    const DWORD state = ::WaitForSingleObject(process, 0);
    ::CloseHandle(process);
    return state == WAIT_OBJECT_0;
}

void RemoveStaleTemporaries(const std::wstring& folder) {
    WIN32_FIND_DATAW found{};
    const std::wstring pattern = folder + L".zekl-*.tmp";
    HANDLE search =
        ::FindFirstFileExW(pattern.c_str(), FindExInfoBasic, &found, FindExSearchNameMatch, nullptr, 0);
    if (search == INVALID_HANDLE_VALUE) {
        return;
    }
    const unsigned long self = ::GetCurrentProcessId();
    do {
        if ((found.dwFileAttributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT)) != 0) {
            continue;
        }
        const unsigned long processId = TemporaryNameProcess(Narrow(found.cFileName));
        if (processId != 0 && processId != self && ProcessIsGone(processId)) {
            ::DeleteFileW((folder + found.cFileName).c_str());
        }
    } while (::FindNextFileW(search, &found));
    ::FindClose(search);
}

// Why an existing target may not be replaced (empty when it may), and for a link the path of
// the file it points to.
std::string DescribeExisting(HANDLE existing, bool isLink, std::string& resolvedPath) {
    if (::GetFileType(existing) != FILE_TYPE_DISK) {
        return NotRegularReason("a device or a pipe");
    }
    BY_HANDLE_FILE_INFORMATION info{};
    if (!::GetFileInformationByHandle(existing, &info)) {
        return WindowsReason(::GetLastError());
    }
    if ((info.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
        return NotRegularReason("a folder");
    }
    if (!isLink) {
        return std::string();
    }
    std::wstring resolved(MAX_PATH, L'\0');
    for (int attempt = 0; attempt < 2; ++attempt) {
        const DWORD length =
            ::GetFinalPathNameByHandleW(existing, &resolved[0], static_cast<DWORD>(resolved.size()),
                                        FILE_NAME_NORMALIZED | VOLUME_NAME_DOS);
        if (length == 0) {
            return WindowsReason(::GetLastError());
        }
        if (length < resolved.size()) {
            resolved.resize(length);
            resolvedPath = Narrow(resolved);
            return std::string();
        }
        resolved.resize(length + 1);
    }
    return WindowsReason(ERROR_INSUFFICIENT_BUFFER);
}

#else

// The kind of a file that is not regular, for a refusal.
std::string NotRegularReason(mode_t mode) {
    if (S_ISDIR(mode)) {
        return NotRegularReason("a folder");
    }
    if (S_ISFIFO(mode)) {
        return NotRegularReason("a FIFO");
    }
    if (S_ISCHR(mode)) {
        return NotRegularReason("a character device");
    }
    if (S_ISBLK(mode)) {
        return NotRegularReason("a block device");
    }
    if (S_ISSOCK(mode)) {
        return NotRegularReason("a socket");
    }
    if (S_ISLNK(mode)) {
        return NotRegularReason("a symbolic link");
    }
    return "not a regular file";
}

int OpenRetrying(const char* path, int flags, mode_t mode = 0) {
    int fd = -1;
    do {
        fd = ::open(path, flags, mode);
    } while (fd < 0 && errno == EINTR);
    return fd;
}

// Makes a rename in the folder durable. Best effort: some file systems cannot sync a folder,
// and the new file is complete either way.
void SyncFolder(const std::string& folder) {
    const int fd = OpenRetrying(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd >= 0) {
        (void)::fsync(fd);
        ::close(fd);
    }
}

// Temporary files of writes that were killed before they ended: their process is gone. A
// process that exists (or that this one may not signal) keeps its files.
void RemoveStaleTemporaries(const std::string& folder) {
    DIR* dir = ::opendir(folder.empty() ? "." : folder.c_str());
    if (dir == nullptr) {
        return;
    }
    const auto self = static_cast<unsigned long>(::getpid());
    while (const dirent* entry = ::readdir(dir)) {
        const unsigned long processId = TemporaryNameProcess(entry->d_name);
        if (processId == 0 || processId == self || processId > static_cast<unsigned long>(INT32_MAX)) {
            continue;
        }
        if (::kill(static_cast<pid_t>(processId), 0) == 0 || errno != ESRCH) {
            continue;
        }
        struct stat info {};
        if (::fstatat(::dirfd(dir), entry->d_name, &info, AT_SYMLINK_NOFOLLOW) == 0 &&
            S_ISREG(info.st_mode)) {
            (void)::unlinkat(::dirfd(dir), entry->d_name, 0);
        }
    }
    ::closedir(dir);
}

#endif

}  // namespace

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

#ifdef _WIN32

bool InputFile::IsOpen() const {
    return handle_ != nullptr;
}

void InputFile::Close() noexcept {
    if (handle_ != nullptr) {
        ::CloseHandle(handle_);
        handle_ = nullptr;
    }
}

bool InputFile::Open(const char* path) {
    Close();
    refusal_ = OpenRefusal::None;
    reason_.clear();
    size_ = 0;
    position_ = 0;
    if (path == nullptr || path[0] == '\0') {
        return Refuse(OpenRefusal::CannotOpen, kNoFileName);
    }
    std::wstring wide;
    try {
        wide = Wide(path);
    } catch (const TranscodeError&) {
        return Refuse(OpenRefusal::CannotOpen, kInvalidName);
    }
    HANDLE handle =
        ::CreateFileW(wide.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                      nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL | FILE_FLAG_SEQUENTIAL_SCAN, nullptr);
    if (handle == INVALID_HANDLE_VALUE) {
        const DWORD error = ::GetLastError();
        // Looked at again only to word the refusal: a folder cannot be opened this way.
        const DWORD attributes = ::GetFileAttributesW(wide.c_str());
        if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
            return Refuse(OpenRefusal::NotRegularFile, NotRegularReason("a folder"));
        }
        return Refuse(OpenRefusal::CannotOpen, WindowsReason(error));
    }
    handle_ = handle;
    if (::GetFileType(handle) != FILE_TYPE_DISK) {
        return Refuse(OpenRefusal::NotRegularFile, NotRegularReason("a device or a pipe"));
    }
    BY_HANDLE_FILE_INFORMATION info{};
    if (!::GetFileInformationByHandle(handle, &info)) {
        return Refuse(OpenRefusal::CannotOpen, WindowsReason(::GetLastError()));
    }
    if ((info.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
        return Refuse(OpenRefusal::NotRegularFile, NotRegularReason("a folder"));
    }
    size_ = (static_cast<uint64_t>(info.nFileSizeHigh) << 32) | info.nFileSizeLow;
    return true;
}

bool InputFile::Read(void* buffer, std::size_t size, std::size_t& count) {
    count = 0;
    if (handle_ == nullptr) {
        reason_ = kNotOpen;
        return false;
    }
    DWORD done = 0;
    if (!::ReadFile(handle_, buffer, static_cast<DWORD>(std::min(size, kMaxTransfer)), &done, nullptr)) {
        reason_ = WindowsReason(::GetLastError());
        return false;
    }
    count = done;
    position_ += done;
    return true;
}

#else

bool InputFile::IsOpen() const {
    return fd_ >= 0;
}

void InputFile::Close() noexcept {
    if (fd_ >= 0) {
        ::close(fd_);
        fd_ = -1;
    }
}

bool InputFile::Open(const char* path) {
    Close();
    refusal_ = OpenRefusal::None;
    reason_.clear();
    size_ = 0;
    position_ = 0;
    if (path == nullptr || path[0] == '\0') {
        return Refuse(OpenRefusal::CannotOpen, kNoFileName);
    }
    // O_NONBLOCK: opening a FIFO that has no writer returns at once instead of waiting for one.
    const int fd = OpenRetrying(path, O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (fd < 0) {
        const int error = errno;
        // The name is looked at again only to word the refusal (a socket cannot be opened, an
        // unreadable device is still no file); it is refused either way.
        struct stat info {};
        if (::stat(path, &info) == 0 && !S_ISREG(info.st_mode)) {
            return Refuse(OpenRefusal::NotRegularFile, NotRegularReason(info.st_mode));
        }
        return Refuse(OpenRefusal::CannotOpen, SystemReason(error));
    }
    fd_ = fd;
    struct stat info {};
    if (::fstat(fd, &info) != 0) {
        return Refuse(OpenRefusal::CannotOpen, SystemReason(errno));
    }
    if (!S_ISREG(info.st_mode)) {
        return Refuse(OpenRefusal::NotRegularFile, NotRegularReason(info.st_mode));
    }
    // Reads of a regular file wait for the disk as usual; the flag was for the open only.
    const int flags = ::fcntl(fd, F_GETFL);
    if (flags >= 0) {
        (void)::fcntl(fd, F_SETFL, flags & ~O_NONBLOCK);
    }
    size_ = static_cast<uint64_t>(info.st_size);
    return true;
}

bool InputFile::Read(void* buffer, std::size_t size, std::size_t& count) {
    count = 0;
    if (fd_ < 0) {
        reason_ = kNotOpen;
        return false;
    }
    ssize_t done = 0;
    do {
        done = ::read(fd_, buffer, std::min(size, kMaxTransfer));
    } while (done < 0 && errno == EINTR);
    if (done < 0) {
        reason_ = SystemReason(errno);
        return false;
    }
    count = static_cast<std::size_t>(done);
    position_ += count;
    return true;
}

#endif

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

#ifdef _WIN32

void ReplacingFile::Discard() noexcept {
    if (handle_ != nullptr) {
        ::CloseHandle(handle_);
        handle_ = nullptr;
    }
    if (!temporary_.empty()) {
        try {
            ::DeleteFileW(Wide(temporary_).c_str());
        } catch (...) {
            // The name was made from a valid one; it converts.
        }
        temporary_.clear();
    }
}

bool ReplacingFile::Open(const char* target) {
    Discard();
    reason_.clear();
    target_.clear();
    written_ = 0;
    targetExists_ = false;
    if (target == nullptr || target[0] == '\0') {
        return Fail(kNoFileName);
    }
    std::wstring wideTarget;
    try {
        wideTarget = Wide(target);
    } catch (const TranscodeError&) {
        return Fail(kInvalidName);
    }
    // What the name leads to, links followed: its kind, and where a link points.
    HANDLE existing = ::CreateFileW(wideTarget.c_str(), FILE_READ_ATTRIBUTES,
                                    FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                    OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    const DWORD openError = existing == INVALID_HANDLE_VALUE ? ::GetLastError() : ERROR_SUCCESS;
    // The name itself, not followed: a link has the reparse-point attribute.
    const DWORD linkAttributes = ::GetFileAttributesW(wideTarget.c_str());
    const bool isLink =
        linkAttributes != INVALID_FILE_ATTRIBUTES && (linkAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
    if (existing == INVALID_HANDLE_VALUE) {
        if (isLink) {
            return Fail(openError == ERROR_CANT_RESOLVE_FILENAME ? kLinkLoop : kDanglingLink);
        }
        if (openError != ERROR_FILE_NOT_FOUND) {
            return Fail(WindowsReason(openError));
        }
        target_ = target;
    } else {
        const std::string refusal = DescribeExisting(existing, isLink, target_);
        ::CloseHandle(existing);
        if (!refusal.empty()) {
            return Fail(refusal);
        }
        if (!isLink) {
            target_ = target;
        }
        targetExists_ = true;
    }
    const std::string folder = FolderOf(target_);
    const std::wstring wideFolder = Wide(folder);
    RemoveStaleTemporaries(wideFolder);
    DWORD error = ERROR_FILE_EXISTS;
    for (int attempt = 0; attempt < kTemporaryAttempts && handle_ == nullptr; ++attempt) {
        const std::string name = TemporaryName(::GetCurrentProcessId());
        HANDLE file = ::CreateFileW((wideFolder + Wide(name)).c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                                    FILE_ATTRIBUTE_NORMAL, nullptr);
        if (file != INVALID_HANDLE_VALUE) {
            handle_ = file;
            temporary_ = folder + name;
            break;
        }
        error = ::GetLastError();
        if (error != ERROR_FILE_EXISTS && error != ERROR_ALREADY_EXISTS) {
            break;
        }
    }
    if (handle_ == nullptr) {
        return Fail(WindowsReason(error));
    }
    return true;
}

bool ReplacingFile::Write(const char* data, std::size_t size) {
    if (handle_ == nullptr) {
        return Fail(reason_.empty() ? std::string(kNotOpen) : reason_);
    }
    while (size > 0) {
        DWORD done = 0;
        if (!::WriteFile(handle_, data, static_cast<DWORD>(std::min(size, kMaxTransfer)), &done, nullptr)) {
            return Fail(WindowsReason(::GetLastError()));
        }
        data += done;
        size -= done;
        written_ += done;
    }
    return true;
}

bool ReplacingFile::Commit() {
    if (handle_ == nullptr) {
        return Fail(reason_.empty() ? std::string(kNotOpen) : reason_);
    }
    if (!::FlushFileBuffers(handle_)) {
        return Fail(WindowsReason(::GetLastError()));
    }
    HANDLE file = handle_;
    handle_ = nullptr;
    if (!::CloseHandle(file)) {
        return Fail(WindowsReason(::GetLastError()));
    }
    const std::wstring from = Wide(temporary_);
    const std::wstring to = Wide(target_);
    // ReplaceFileW keeps the old file's attributes and security; when it fails the old file is
    // still there under its name. A file that did not exist is moved in place.
    const bool moved = targetExists_ ? ::ReplaceFileW(to.c_str(), from.c_str(), nullptr,
                                                      REPLACEFILE_IGNORE_MERGE_ERRORS, nullptr, nullptr) != 0
                                     : ::MoveFileExW(from.c_str(), to.c_str(),
                                                     MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != 0;
    if (!moved) {
        return Fail(WindowsReason(::GetLastError()));
    }
    temporary_.clear();
    return true;
}

#else

void ReplacingFile::Discard() noexcept {
    if (fd_ >= 0) {
        ::close(fd_);
        fd_ = -1;
    }
    if (!temporary_.empty()) {
        (void)::unlink(temporary_.c_str());
        temporary_.clear();
    }
}

bool ReplacingFile::Open(const char* target) {
    Discard();
    reason_.clear();
    target_.clear();
    written_ = 0;
    if (target == nullptr || target[0] == '\0') {
        return Fail(kNoFileName);
    }
    struct stat info {};
    bool exists = false;
    target_ = target;
    if (::lstat(target, &info) == 0) {
        if (S_ISLNK(info.st_mode)) {
            // The link stays; the file it points to is what gets replaced.
            if (::stat(target, &info) != 0) {
                const int error = errno;
                if (error == ELOOP) {
                    return Fail(kLinkLoop);
                }
                return Fail(error == ENOENT || error == ENOTDIR ? std::string(kDanglingLink)
                                                                : SystemReason(error));
            }
            char* resolved = ::realpath(target, nullptr);
            if (resolved == nullptr) {
                return Fail(SystemReason(errno));
            }
            target_ = resolved;
            std::free(resolved);
        }
        if (!S_ISREG(info.st_mode)) {
            return Fail(NotRegularReason(info.st_mode));
        }
        // A file that may not be written is not replaced either: writing it in place would
        // have failed too.
        if (::faccessat(AT_FDCWD, target_.c_str(), W_OK, AT_EACCESS) != 0) {
            return Fail(SystemReason(errno));
        }
        exists = true;
    } else if (errno != ENOENT) {
        return Fail(SystemReason(errno));
    }

    // Beside the target, so that the rename stays on one file system.
    const std::string folder = FolderOf(target_);
    RemoveStaleTemporaries(folder);
    int error = EEXIST;
    for (int attempt = 0; attempt < kTemporaryAttempts; ++attempt) {
        const std::string path = folder + TemporaryName(static_cast<unsigned long>(::getpid()));
        // 0666: the umask decides for a new file; a replaced file's mode is copied below.
        const int fd = OpenRetrying(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0666);
        if (fd >= 0) {
            fd_ = fd;
            temporary_ = path;
            break;
        }
        error = errno;
        if (error != EEXIST) {
            break;
        }
    }
    if (fd_ < 0) {
        return Fail(SystemReason(error));
    }
    if (exists) {
        // Owner first: giving a file away clears its set-id bits, which the mode then restores.
        // Only the group can be kept where the file may not be given away.
        if (::fchown(fd_, info.st_uid, info.st_gid) != 0) {
            (void)::fchown(fd_, static_cast<uid_t>(-1), info.st_gid);
        }
        (void)::fchmod(fd_, info.st_mode & 07777);
    }
    return true;
}

bool ReplacingFile::Write(const char* data, std::size_t size) {
    if (fd_ < 0) {
        return Fail(reason_.empty() ? std::string(kNotOpen) : reason_);
    }
    while (size > 0) {
        const ssize_t done = ::write(fd_, data, std::min(size, kMaxTransfer));
        if (done < 0 && errno == EINTR) {
            continue;
        }
        if (done <= 0) {
            return Fail(SystemReason(done == 0 ? EIO : errno));
        }
        data += done;
        size -= static_cast<std::size_t>(done);
        written_ += static_cast<uint64_t>(done);
    }
    return true;
}

bool ReplacingFile::Commit() {
    if (fd_ < 0) {
        return Fail(reason_.empty() ? std::string(kNotOpen) : reason_);
    }
    if (::fsync(fd_) != 0) {
        return Fail(SystemReason(errno));
    }
    const int fd = fd_;
    fd_ = -1;
    if (::close(fd) != 0) {
        return Fail(SystemReason(errno));
    }
    // What Open accepted may have been swapped since for something that must not be replaced.
    struct stat info {};
    if (::lstat(target_.c_str(), &info) == 0 && !S_ISREG(info.st_mode)) {
        return Fail(NotRegularReason(info.st_mode));
    }
    if (::rename(temporary_.c_str(), target_.c_str()) != 0) {
        return Fail(SystemReason(errno));
    }
    temporary_.clear();
    SyncFolder(FolderOf(target_));
    return true;
}

#endif

bool ReplaceFileContents(const char* target, const char* data, std::size_t size, std::string& reason) {
    ReplacingFile file;
    if (!file.Open(target) || !file.Write(data, size) || !file.Commit()) {
        reason = file.Reason();
        return false;
    }
    return true;
}

}  // namespace Korvel::Platform
