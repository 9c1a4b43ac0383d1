// The file component on POSIX systems (see File.h).
#ifndef _WIN32

#include "platform/File.h"

#include "platform/FileDetail.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdlib>

#include <dirent.h>
#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Korvel::Platform {

using namespace FileDetail;

namespace {

// The kind of a file that is not regular, for a refusal.
std::string KindReason(mode_t mode) {
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

}  // namespace

// ---------------------------------------------------------------------------------------------
// InputFile

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
            return Refuse(OpenRefusal::NotRegularFile, KindReason(info.st_mode));
        }
        return Refuse(OpenRefusal::CannotOpen, SystemReason(error));
    }
    fd_ = fd;
    struct stat info {};
    if (::fstat(fd, &info) != 0) {
        return Refuse(OpenRefusal::CannotOpen, SystemReason(errno));
    }
    if (!S_ISREG(info.st_mode)) {
        return Refuse(OpenRefusal::NotRegularFile, KindReason(info.st_mode));
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

// ---------------------------------------------------------------------------------------------
// ReplacingFile

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
            return Fail(KindReason(info.st_mode));
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
        return Fail(KindReason(info.st_mode));
    }
    if (::rename(temporary_.c_str(), target_.c_str()) != 0) {
        return Fail(SystemReason(errno));
    }
    temporary_.clear();
    SyncFolder(FolderOf(target_));
    return true;
}

}  // namespace Korvel::Platform

#endif
