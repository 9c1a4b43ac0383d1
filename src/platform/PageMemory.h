// Memory taken from the operating system page by page, for the model arena and the writer's
// output text.
//
// Every first touch of a fresh page is a page fault. Where faults are dear (in a virtual
// machine one costs some 10 us, so that touching fresh memory takes 2.5 ms per MB, a third of
// what parsing that MB costs), a model of hundreds of megabytes spends more time on faults than
// on reading. Prefaulting a range takes one system call for many pages. Whether it is done is a
// choice of the build (CMake option ZEKL_PREFAULT, on by default; bench/README.md has the
// figures with it on and off).
#pragma once

#include <cstddef>

namespace Korvel::Platform {

// A block of `size` bytes of zeroed memory straight from the system, or null when the system
// has none. Give it back with UnmapPages and the same size.
void* MapPages(std::size_t size) noexcept;
void UnmapPages(void* block, std::size_t size) noexcept;

// Asks the system to provide the pages of [data, data + size) now, in one call, instead of
// one fault per page as they are first written. A hint: where the system cannot, or the build
// switched prefaulting off, the pages come on first touch. Only for memory the caller is about
// to write.
void PrefaultPages(void* data, std::size_t size) noexcept;

// Whether the build prefaults (ZEKL_PREFAULT).
bool PrefaultPolicy() noexcept;

}  // namespace Korvel::Platform
