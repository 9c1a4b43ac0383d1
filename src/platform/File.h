// The library's file access, for the reader, the writer and the tool: opening a document for
// reading and replacing a file by a complete new one. Paths are UTF-8 on every platform (wide
// paths on Windows). Failures are a false result and a reason a person can read: the system's
// own text ("No space left on device") or a refusal ("not a regular file (a FIFO)").
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace Korvel::Platform {

// What InputFile::Open ran into.
enum class OpenRefusal {
    None,
    // Missing, unreadable, or any other failure of the open itself.
    CannotOpen,
    // A folder, a FIFO, a device or a socket.
    NotRegularFile,
};

// A regular file open for reading.
//
// Open opens the path once, without blocking, and then asks the open handle what it is: a FIFO
// nobody writes to would block an ordinary open for ever, a device (/dev/zero) would feed an
// endless document, and checking the name before opening it would leave a gap in which the
// name can be pointed elsewhere. Only a regular file stays open.
class InputFile {
public:
    InputFile() = default;
    ~InputFile();
    InputFile(const InputFile&) = delete;
    InputFile& operator=(const InputFile&) = delete;

    // False (and the file stays closed) for a null or empty path, a path that cannot be opened
    // and anything but a regular file; Refusal and Reason then say why.
    bool Open(const char* path);
    bool IsOpen() const;
    void Close() noexcept;
    OpenRefusal Refusal() const { return refusal_; }
    const std::string& Reason() const { return reason_; }
    // The file's size when it was opened.
    uint64_t Size() const { return size_; }
    // Bytes read so far.
    uint64_t Position() const { return position_; }

    // Reads up to `size` bytes at the current position into `buffer`; `count` is 0 at the end
    // of the file. False on a read error (Reason says why).
    bool Read(void* buffer, std::size_t size, std::size_t& count);
    // Appends bytes to `bytes` until it holds `limit` more or the file ends. False on a read
    // error.
    bool ReadUpTo(std::size_t limit, std::string& bytes);

private:
    bool Refuse(OpenRefusal refusal, std::string reason);

#ifdef _WIN32
    void* handle_ = nullptr;
#else
    int fd_ = -1;
#endif
    OpenRefusal refusal_ = OpenRefusal::None;
    std::string reason_;
    uint64_t size_ = 0;
    uint64_t position_ = 0;
};

// At most `limit` bytes from the start of the regular file at `path`, through InputFile.
// False, with the reason, when it cannot be opened or read.
bool ReadFilePrefix(const char* path, std::size_t limit, std::string& bytes, std::string& reason);

// Replaces a file by a new one only once the new one is complete.
//
// The bytes go to a new temporary file ".zekl-<process id>-<random>.tmp" beside the target,
// created exclusively (never an existing file, never through a planted link). Commit syncs it
// to the disk, renames it over the target and syncs the folder, so that the target is at every
// moment either the old file or the whole new one, also across a crash or a full disk. A file
// that is replaced keeps its permissions (and, where the process may give them, its owner and
// group). A symbolic link is followed: the file it points to is replaced and the link stays.
// Targets that are no regular file (a folder, a FIFO, a device, a socket), dangling links and
// link loops are refused and never touched. Opening also removes the temporary files that
// writes killed before their end left in the folder (those whose process no longer exists).
class ReplacingFile {
public:
    ReplacingFile() = default;
    // Discards the temporary file unless it was committed.
    ~ReplacingFile();
    ReplacingFile(const ReplacingFile&) = delete;
    ReplacingFile& operator=(const ReplacingFile&) = delete;

    // Checks the target and creates the temporary file. False with the reason when the target
    // is refused or the temporary file cannot be made; nothing is left behind then.
    bool Open(const char* target);
    // Appends the bytes to the temporary file. False with the reason (the file stays until
    // Discard or the destructor).
    bool Write(const char* data, std::size_t size);
    // Syncs the temporary file, closes it and renames it over the target. False with the
    // reason; the temporary file is then gone and the target as it was.
    bool Commit();
    // Closes and removes the temporary file, if any.
    void Discard() noexcept;

    const std::string& Reason() const { return reason_; }
    // The temporary file, empty when there is none (before Open, after Commit or Discard).
    const std::string& TemporaryPath() const { return temporary_; }
    // The file that Commit replaces: the target, or the file its link points to.
    const std::string& TargetPath() const { return target_; }
    uint64_t BytesWritten() const { return written_; }

private:
    bool Fail(std::string reason);

#ifdef _WIN32
    void* handle_ = nullptr;
    bool targetExists_ = false;
#else
    int fd_ = -1;
#endif
    std::string target_;
    std::string temporary_;
    std::string reason_;
    uint64_t written_ = 0;
};

// Writes `size` bytes to `target` through a ReplacingFile. False with the reason on failure;
// the target is then as it was.
bool ReplaceFileContents(const char* target, const char* data, std::size_t size, std::string& reason);

}  // namespace Korvel::Platform
