// The C library's heap, counted: a program may put its own functions in the library's place, which
// keeps the originals under names of its own.

#include "Tools/rtaudit/CThreadAudit.h"

#include <cerrno>
#include <cstddef>

#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)

namespace {

void countAllocation() noexcept
{
    if (tsm::CAuditCounts* counts = tsm::CThreadAudit::current())
        ++counts->allocations;
}

} // namespace

// NOLINTBEGIN(bugprone-reserved-identifier, readability-identifier-naming)
extern "C" {

void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);
void __libc_free(void* block);

void* malloc(std::size_t size)
{
    countAllocation();
    return __libc_malloc(size);
}

void* calloc(std::size_t count, std::size_t size)
{
    countAllocation();
    return __libc_calloc(count, size);
}

void* realloc(void* block, std::size_t size)
{
    countAllocation();
    return __libc_realloc(block, size);
}

void* memalign(std::size_t alignment, std::size_t size)
{
    countAllocation();
    return __libc_memalign(alignment, size);
}

void* aligned_alloc(std::size_t alignment, std::size_t size)
{
    return memalign(alignment, size);
}

int posix_memalign(void** block, std::size_t alignment, std::size_t size)
{
    *block = memalign(alignment, size);
    return *block ? 0 : ENOMEM;
}

void free(void* block)
{
    tsm::CAuditCounts* counts = tsm::CThreadAudit::current();
    if (counts && block)
        ++counts->frees;
    __libc_free(block);
}
}
// NOLINTEND(bugprone-reserved-identifier, readability-identifier-naming)

#endif
