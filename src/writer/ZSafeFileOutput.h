// A stream on a file that is replaced only by a complete document: the writer's side of
// Platform::ReplacingFile (see platform/File.h). The bytes go to a temporary file beside the
// target; Commit syncs it and renames it over the target. Until then the target stays as it
// was, whatever fails (a full disk, a missing folder, a crash in the middle); a temporary file
// that is not committed is removed.
#pragma once

#include "platform/File.h"

#include <cstdint>
#include <memory>
#include <ostream>
#include <stdexcept>
#include <string>

namespace Korvel {

// Why a file could not be written: what() is the reason, the system's own text ("No space
// left on device") or why the target was refused ("not a regular file (a FIFO)").
class FileWriteError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

class ZSafeFileOutput {
public:
    // Checks the target `fileName` (UTF-8) and creates the temporary file beside it. Throws
    // std::invalid_argument for an empty name, FileWriteError when the target is refused or
    // the temporary file cannot be made, std::bad_alloc when there is no memory for the
    // buffer. Nothing is left open or on the disk when it throws.
    explicit ZSafeFileOutput(const std::string& fileName);
    // Removes the temporary file unless it was committed.
    ~ZSafeFileOutput();
    ZSafeFileOutput(const ZSafeFileOutput&) = delete;
    ZSafeFileOutput& operator=(const ZSafeFileOutput&) = delete;

    // Binary stream on the temporary file. A write that fails throws FileWriteError (the
    // stream passes on what its buffer throws).
    std::ostream& Stream() { return stream_; }
    // Bytes written to the stream so far, buffered ones included.
    uint64_t BytesWritten() const;
    // Writes out the buffer, syncs the file to the disk, closes it and renames it over the
    // target. Throws FileWriteError; the temporary file is then removed and the target is as
    // it was.
    void Commit();
    // Path of the temporary file (empty once it was committed or removed).
    const std::string& TemporaryPath() const { return file_.TemporaryPath(); }

private:
    class Buffer;

    Platform::ReplacingFile file_;
    std::unique_ptr<Buffer> buffer_;
    std::ostream stream_;
};

}  // namespace Korvel
