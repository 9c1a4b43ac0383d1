// Makes large allocations of the writer test program fail on demand, to show what the code
// does when the system has no memory for a buffer. The program's operator new and delete are
// replaced (FailingAllocation.cpp); they pass every request to malloc and free unless a failure
// is armed.
#pragma once

#include <cstddef>

namespace Korvel::WriterTest {

// While it lives, every allocation of at least `bytes` bytes throws std::bad_alloc.
class FailingAllocation {
public:
    explicit FailingAllocation(std::size_t bytes);
    ~FailingAllocation();
    FailingAllocation(const FailingAllocation&) = delete;
    FailingAllocation& operator=(const FailingAllocation&) = delete;

    // Allocations refused so far.
    static std::size_t Refused();
};

}  // namespace Korvel::WriterTest
