// Output to a file that is replaced only by a complete document. The bytes go to a new
// temporary file in the target's folder; Commit flushes it to the disk and renames it over
// the target. Until then the target stays as it was, whatever fails (a full disk, a missing
// folder, a crash in the middle); a temporary file that is not committed is removed.
#pragma once

#include <cstdint>
#include <memory>
#include <ostream>
#include <streambuf>
#include <string>

namespace Korvel {

class ZSafeFileOutput {
public:
    // Creates the temporary file beside `fileName` (UTF-8). Throws std::system_error when it
    // cannot be created and std::invalid_argument for an empty name.
    explicit ZSafeFileOutput(const std::string& fileName);
    // Removes the temporary file unless it was committed.
    ~ZSafeFileOutput();
    ZSafeFileOutput(const ZSafeFileOutput&) = delete;
    ZSafeFileOutput& operator=(const ZSafeFileOutput&) = delete;

    // Binary stream on the temporary file; it throws std::ios_base::failure when a write fails.
    std::ostream& Stream() { return m_stream; }
    // Bytes written to the stream so far, buffered ones included.
    uint64_t BytesWritten() const;
    // Writes out the buffer, syncs the file to the disk, closes it and renames it over the
    // target. Throws std::system_error (the temporary file is then removed).
    void Commit();
    // Path of the temporary file (empty once it was committed or removed).
    const std::string& TemporaryPath() const { return m_tempPath; }

private:
    class FileBuffer;

    void Discard() noexcept;

    std::string m_target;
    std::string m_tempPath;
    std::unique_ptr<FileBuffer> m_buffer;
    std::ostream m_stream;
};

}  // namespace Korvel
