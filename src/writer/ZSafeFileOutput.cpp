#include "writer/ZSafeFileOutput.h"

#include <atomic>
#include <cerrno>
#include <stdexcept>
#include <system_error>

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#include <share.h>
#include <sys/stat.h>
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

#include <filesystem>
#else
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <climits>
#include <cstdlib>
#endif

namespace Korvel {

namespace {

// The few file calls that differ between the platforms.
#ifdef _WIN32
std::wstring Wide(const std::string& path) {
    return std::filesystem::u8path(path).wstring();
}
int OpenNew(const std::string& path, const std::string& /*target*/) {
    int fd = -1;
    _wsopen_s(&fd, Wide(path).c_str(), _O_WRONLY | _O_CREAT | _O_EXCL | _O_BINARY | _O_NOINHERIT, _SH_DENYRW,
              _S_IREAD | _S_IWRITE);
    return fd;
}
long WriteSome(int fd, const char* data, std::size_t size) {
    const unsigned chunk = size > 0x40000000u ? 0x40000000u : static_cast<unsigned>(size);
    return _write(fd, data, chunk);
}
bool SyncFile(int fd) {
    return _commit(fd) == 0;
}
bool CloseFile(int fd) {
    return _close(fd) == 0;
}
bool MoveOverTarget(const std::string& from, const std::string& to) {
    if (MoveFileExW(Wide(from).c_str(), Wide(to).c_str(),
                    MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH)) {
        return true;
    }
    errno = EACCES;
    return false;
}
void RemoveFile(const std::string& path) {
    _wremove(Wide(path).c_str());
}
void SyncFolderOf(const std::string&) {}
unsigned long ProcessId() {
    return static_cast<unsigned long>(GetCurrentProcessId());
}
std::string ResolveTarget(const std::string& fileName) {
    return fileName;
}
// MoveFileExW refuses a read-only target by itself.
bool MayReplace(const std::string&) {
    return true;
}
const char* const kSeparators = "/\\";
#else
int OpenNew(const std::string& path, const std::string& target) {
    // 0666 lets the umask decide, as for any new file; an existing target keeps its mode.
    const int fd = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    struct stat existing {};
    if (fd >= 0 && ::stat(target.c_str(), &existing) == 0 && S_ISREG(existing.st_mode)) {
        ::fchmod(fd, existing.st_mode & 07777);
        if (::fchown(fd, existing.st_uid, existing.st_gid) != 0) {
            // Only the owner's group can be kept when we may not give the file away.
            (void)::fchown(fd, static_cast<uid_t>(-1), existing.st_gid);
        }
    }
    return fd;
}
long WriteSome(int fd, const char* data, std::size_t size) {
    return static_cast<long>(::write(fd, data, size));
}
bool SyncFile(int fd) {
    return ::fsync(fd) == 0;
}
bool CloseFile(int fd) {
    return ::close(fd) == 0;
}
bool MoveOverTarget(const std::string& from, const std::string& to) {
    return ::rename(from.c_str(), to.c_str()) == 0;
}
void RemoveFile(const std::string& path) {
    ::unlink(path.c_str());
}
// Makes the rename itself durable; best effort, the document is complete either way.
void SyncFolderOf(const std::string& folder) {
    const int fd = ::open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd >= 0) {
        ::fsync(fd);
        ::close(fd);
    }
}
// A symbolic link is replaced through: the file it points to gets the new document.
std::string ResolveTarget(const std::string& fileName) {
    struct stat info {};
    if (::lstat(fileName.c_str(), &info) == 0 && S_ISLNK(info.st_mode)) {
        if (char* real = ::realpath(fileName.c_str(), nullptr)) {
            std::string resolved(real);
            std::free(real);
            return resolved;
        }
    }
    return fileName;
}
unsigned long ProcessId() {
    return static_cast<unsigned long>(::getpid());
}
// An existing file that may not be written is not replaced either: writing it in place
// would have failed too.
bool MayReplace(const std::string& target) {
    return ::access(target.c_str(), F_OK) != 0 || ::access(target.c_str(), W_OK) == 0;
}
const char* const kSeparators = "/";
#endif

std::string FolderOf(const std::string& path) {
    const std::size_t slash = path.find_last_of(kSeparators);
    return slash == std::string::npos ? std::string() : path.substr(0, slash + 1);
}

std::system_error LastError(const char* what) {
    return std::system_error(errno, std::generic_category(), what);
}

std::atomic<unsigned> g_tempCounter{0};

}  // namespace

// Large buffered writes straight to the descriptor: no flush until the buffer is full.
class ZSafeFileOutput::FileBuffer : public std::streambuf {
public:
    explicit FileBuffer(int fd) : m_fd(fd), m_data(new char[kSize]) {
        setp(m_data.get(), m_data.get() + kSize);
    }
    ~FileBuffer() override { Close(); }

    uint64_t Written() const { return m_written + static_cast<uint64_t>(pptr() - pbase()); }

    void Flush() {
        const char* data = pbase();
        std::size_t left = static_cast<std::size_t>(pptr() - pbase());
        while (left > 0) {
            const long done = WriteSome(m_fd, data, left);
            if (done < 0 && errno == EINTR) {
                continue;
            }
            if (done <= 0) {
                if (done == 0) {
                    errno = EIO;
                }
                throw LastError("write");
            }
            data += done;
            left -= static_cast<std::size_t>(done);
            m_written += static_cast<uint64_t>(done);
        }
        setp(m_data.get(), m_data.get() + kSize);
    }

    void SyncAndClose() {
        Flush();
        if (!SyncFile(m_fd)) {
            throw LastError("fsync");
        }
        const int fd = m_fd;
        m_fd = -1;
        if (!CloseFile(fd)) {
            throw LastError("close");
        }
    }

    void Close() noexcept {
        if (m_fd >= 0) {
            CloseFile(m_fd);
            m_fd = -1;
        }
    }

protected:
    int_type overflow(int_type ch) override {
        Flush();
        if (!traits_type::eq_int_type(ch, traits_type::eof())) {
            *pptr() = traits_type::to_char_type(ch);
            pbump(1);
        }
        return traits_type::not_eof(ch);
    }

    int sync() override {
        Flush();
        return 0;
    }

private:
    static constexpr std::size_t kSize = std::size_t{1} << 20;
    int m_fd;
    std::unique_ptr<char[]> m_data;
    uint64_t m_written = 0;
};

ZSafeFileOutput::ZSafeFileOutput(const std::string& fileName) : m_stream(nullptr) {
    if (fileName.empty()) {
        throw std::invalid_argument("empty file name");
    }
    m_target = ResolveTarget(fileName);
    if (!MayReplace(m_target)) {
        throw std::system_error(EACCES, std::generic_category(), "target is read-only");
    }
    const std::string folder = FolderOf(m_target);

    // A hidden name in the same folder keeps the final rename on one file system.
    int fd = -1;
    for (int attempt = 0; attempt < 100 && fd < 0; ++attempt) {
        m_tempPath = folder + ".zekl-" + std::to_string(ProcessId()) + "-" +
                     std::to_string(g_tempCounter.fetch_add(1)) + ".tmp";
        fd = OpenNew(m_tempPath, m_target);
        if (fd < 0 && errno != EEXIST) {
            break;
        }
    }
    if (fd < 0) {
        const std::system_error error = LastError("create temporary file");
        m_tempPath.clear();
        throw error;
    }
    m_buffer = std::make_unique<FileBuffer>(fd);
    m_stream.rdbuf(m_buffer.get());
    m_stream.exceptions(std::ios_base::badbit | std::ios_base::failbit);
}

ZSafeFileOutput::~ZSafeFileOutput() {
    Discard();
}

uint64_t ZSafeFileOutput::BytesWritten() const {
    return m_buffer ? m_buffer->Written() : 0;
}

void ZSafeFileOutput::Commit() {
    try {
        m_buffer->SyncAndClose();
        if (!MoveOverTarget(m_tempPath, m_target)) {
            throw LastError("rename");
        }
    } catch (...) {
        Discard();
        throw;
    }
    m_tempPath.clear();
    SyncFolderOf(FolderOf(m_target));
}

void ZSafeFileOutput::Discard() noexcept {
    if (m_buffer) {
        m_buffer->Close();
    }
    if (!m_tempPath.empty()) {
        RemoveFile(m_tempPath);
        m_tempPath.clear();
    }
}

}  // namespace Korvel
