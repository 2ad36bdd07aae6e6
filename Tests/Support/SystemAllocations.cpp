#include "Tests/Support/SystemAllocations.h"

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)

int tsm::countSystemAllocations() noexcept
{
    return -1;
}

#else

#include <cstdlib>
#include <new>

namespace {

thread_local int allocationCount = 0;

} // namespace

int tsm::countSystemAllocations() noexcept
{
    return allocationCount;
}

void* operator new(std::size_t size)
{
    ++allocationCount;
    if (void* memory = std::malloc(size ? size : 1))
        return memory;
    throw std::bad_alloc();
}

void operator delete(void* memory) noexcept
{
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept
{
    std::free(memory);
}

#endif
