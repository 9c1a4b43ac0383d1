// Memory taken from the operating system page by page, and hints about how the library uses
// large blocks of it.
//
// Every first touch of a fresh page is a page fault. Where faults are dear (in a virtual
// machine one costs some 10 us, so that touching fresh memory takes 2.5 ms per MB, a third of
// what parsing that MB costs), a model of hundreds of megabytes spends more time on faults than
// on reading. Huge pages take one fault per 2 MB; prefaulting a range takes one system call
// for many pages.
#pragma once

#include <cstddef>

namespace Korvel::Platform {

// The size of a huge page, and the alignment MapPages gives a block that asks for them.
constexpr std::size_t kHugePageSize = std::size_t{2} << 20;

// A block of `size` bytes of zeroed memory straight from the system, or null when the system
// has none. With `hugePages`, the block starts on a kHugePageSize boundary and asks for huge
// pages (a hint: where the system has none, it gets ordinary pages). Give it back with
// UnmapPages and the same size.
void* MapPages(std::size_t size, bool hugePages) noexcept;
void UnmapPages(void* block, std::size_t size) noexcept;

// Asks the system to provide the pages of [data, data + size) now, in one call, instead of
// one fault per page as they are first written. A hint: where the system cannot, the pages
// come on first touch as before. Only for memory the caller is about to write. Nothing is done
// when the build switched prefaulting off.
void PrefaultPages(void* data, std::size_t size) noexcept;

// The two page policies of the model arena's upstream, chosen when the library is built
// (CMake options ZEKL_HUGE_PAGES and ZEKL_PREFAULT): whether a chunk of kHugePageSize asks for
// a huge page, and whether the pages of a chunk, and of the writer's output, are prefaulted.
bool HugePagesPolicy() noexcept;
bool PrefaultPolicy() noexcept;

// The upstream of the model arena: a chunk of `size` bytes of zeroed memory, or null when the
// system has none; under the huge-page policy a chunk of kHugePageSize asks for a huge page.
// Give it back with UnmapChunk and the same size. Its pages come on first touch, or when the
// arena prefaults them (PrefaultPages) as it hands them out.
void* MapChunk(std::size_t size) noexcept;
void UnmapChunk(void* chunk, std::size_t size) noexcept;

}  // namespace Korvel::Platform
