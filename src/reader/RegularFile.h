// The reader opens only regular files: a folder makes the XML library fail after it has
// allocated, and a FIFO or a device (a pipe nobody writes to, /dev/zero) would block a read
// or never end it.
#pragma once

namespace Korvel {

// True when the path names a regular file (links followed); never blocks.
bool IsRegularFile(const char* path);

}  // namespace Korvel
