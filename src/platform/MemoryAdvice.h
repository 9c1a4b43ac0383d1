// Hints to the operating system about how the library uses large blocks of memory.
#pragma once

#include <cstddef>

namespace Korvel::Platform {

// Asks for huge pages behind the whole 2 MB pages inside [data, data + size). A document text
// of 100 MB touches 25,600 fresh 4 kB pages otherwise, each a page fault; with huge pages it
// is some fifty. A hint only: nothing changes where the system has no such pages, and blocks
// smaller than a huge page are left alone.
void AdviseLargeBlock(void* data, std::size_t size) noexcept;

}  // namespace Korvel::Platform
