#include "Tests/Support/HeapAllocations.h"

#include <cstddef>

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)

int tsm::countHeapAllocations() noexcept
{
    return -1;
}

#else

namespace {

thread_local int allocationCount = 0;

} // namespace

int tsm::countHeapAllocations() noexcept
{
    return allocationCount;
}

// The C library lets a program replace malloc, and keeps its own under this name.
// NOLINTNEXTLINE(bugprone-reserved-identifier)
extern "C" void* __libc_malloc(std::size_t size);

extern "C" void* malloc(std::size_t size)
{
    ++allocationCount;
    return __libc_malloc(size);
}

#endif
