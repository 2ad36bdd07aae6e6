#include "Tools/Support/HeapWatch.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <charconv>
#include <cstring>

#include <dlfcn.h>
#include <execinfo.h>
#include <malloc.h>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <unistd.h>

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define TSM_HEAP_BY_HOOKS
// The sanitizers' runtimes have these; Debian's g++ comes without their header.
// NOLINTBEGIN(bugprone-reserved-identifier)
extern "C" int __sanitizer_install_malloc_and_free_hooks(
    void (*onMalloc)(const volatile void* memory, std::size_t size),
    void (*onFree)(const volatile void* memory));
extern "C" std::size_t __sanitizer_get_allocated_size(const volatile void* memory);
// NOLINTEND(bugprone-reserved-identifier)
#endif

namespace tsm {

namespace {

std::atomic<std::int64_t> blockCount = 0;
std::atomic<std::int64_t> byteCount = 0;
constinit thread_local bool isWatching = false;
constinit thread_local bool isStackWanted = false;
constinit thread_local CHeapCalls seen;

/// For the calling thread. Looks at the stack once, which may itself ask for memory.
void noteCall(std::size_t size) noexcept
{
    if (!isWatching)
        return;
    isWatching = false;
    if (++seen.callCount == 1 && isStackWanted)
        seen.firstCallDepth = backtrace(seen.firstCall, CHeapCalls::kMaxFrames);
    seen.largest = std::max(seen.largest, size);
    isWatching = true;
}

void noteTaken(std::size_t size, std::size_t kept) noexcept
{
    blockCount.fetch_add(1, std::memory_order_relaxed);
    byteCount.fetch_add(static_cast<std::int64_t>(kept), std::memory_order_relaxed);
    seen.takenCount += isWatching ? 1 : 0;
    noteCall(size);
}

void noteGiven(std::size_t kept) noexcept
{
    blockCount.fetch_sub(1, std::memory_order_relaxed);
    byteCount.fetch_sub(static_cast<std::int64_t>(kept), std::memory_order_relaxed);
    seen.givenCount += isWatching ? 1 : 0;
    noteCall(0);
}

#ifdef TSM_HEAP_BY_HOOKS
void onMalloc(const volatile void*, std::size_t size)
{
    noteTaken(size, size);
}

void onFree(const volatile void* memory)
{
    if (memory)
        noteGiven(__sanitizer_get_allocated_size(memory));
}

const bool areHooksThere = __sanitizer_install_malloc_and_free_hooks(onMalloc, onFree) != 0;
#endif

} // namespace

bool isHeapPlain() noexcept
{
#ifdef TSM_HEAP_BY_HOOKS
    return false;
#else
    return true;
#endif
}

CHeapUse getHeapUse() noexcept
{
    return {blockCount.load(), byteCount.load()};
}

void beginHeapWatch(bool keepsStack) noexcept
{
    void* unused[4];
    if (keepsStack)
        backtrace(unused, 4); // its first call loads a library
    isStackWanted = keepsStack;
    seen = {};
    isWatching = true;
}

CHeapCalls endHeapWatch() noexcept
{
    isWatching = false;
    return seen;
}

std::string describeFirstCall(const CHeapCalls& calls)
{
    constexpr int kMaxShown = 6;
    Dl_info own = {};
    dladdr(reinterpret_cast<void*>(&describeFirstCall), &own);
    std::string text;
    int shown = 0;
    for (int i = 0; i < calls.firstCallDepth && shown < kMaxShown; ++i) {
        Dl_info place = {};
        if (dladdr(calls.firstCall[i], &place) == 0 || place.dli_fbase == own.dli_fbase)
            continue;
        const char* const slash = std::strrchr(place.dli_fname, '/');
        char digits[20];
        const auto offset = static_cast<std::size_t>(static_cast<char*>(calls.firstCall[i]) -
                                                     static_cast<char*>(place.dli_fbase));
        const auto end = std::to_chars(std::begin(digits), std::end(digits), offset, 16);
        text += (text.empty() ? "" : " < ") + std::string(slash ? slash + 1 : place.dli_fname) +
                "+0x" + std::string(digits, end.ptr);
        ++shown;
    }
    return text;
}

} // namespace tsm

#ifndef TSM_HEAP_BY_HOOKS

// The C library lets a program replace its heap, and keeps its own under these names.
// NOLINTBEGIN(bugprone-reserved-identifier)
extern "C" void* __libc_malloc(std::size_t size);
extern "C" void* __libc_calloc(std::size_t count, std::size_t size);
extern "C" void* __libc_realloc(void* memory, std::size_t size);
extern "C" void* __libc_memalign(std::size_t alignment, std::size_t size);
extern "C" void __libc_free(void* memory);
// NOLINTEND(bugprone-reserved-identifier)

#define TSM_HEAP_EXPORT extern "C" __attribute__((visibility("default")))

namespace {

void* take(void* memory, std::size_t size) noexcept
{
    if (memory)
        tsm::noteTaken(size, malloc_usable_size(memory));
    return memory;
}

} // namespace

TSM_HEAP_EXPORT void* malloc(std::size_t size)
{
    return take(__libc_malloc(size), size);
}

TSM_HEAP_EXPORT void* calloc(std::size_t count, std::size_t size)
{
    return take(__libc_calloc(count, size), count * size);
}

TSM_HEAP_EXPORT void free(void* memory)
{
    if (memory)
        tsm::noteGiven(malloc_usable_size(memory));
    __libc_free(memory);
}

TSM_HEAP_EXPORT void* realloc(void* memory, std::size_t size)
{
    const std::size_t former = memory ? malloc_usable_size(memory) : 0;
    void* const moved = __libc_realloc(memory, size);
    if (memory && (moved || size == 0))
        tsm::noteGiven(former);
    return take(moved, size);
}

TSM_HEAP_EXPORT void* memalign(std::size_t alignment, std::size_t size)
{
    return take(__libc_memalign(alignment, size), size);
}

TSM_HEAP_EXPORT void* aligned_alloc(std::size_t alignment, std::size_t size)
{
    return take(__libc_memalign(alignment, size), size);
}

TSM_HEAP_EXPORT int posix_memalign(void** memory, std::size_t alignment, std::size_t size)
{
    const bool isPower = (alignment & (alignment - 1)) == 0;
    if (alignment < sizeof(void*) || !isPower)
        return EINVAL;
    void* const made = take(__libc_memalign(alignment, size), size);
    if (made)
        *memory = made;
    return made ? 0 : ENOMEM;
}

// Memory straight from the system is no business of a process call either.

TSM_HEAP_EXPORT void* mmap(void* address, std::size_t size, int protection, int flags,
                           int descriptor, off_t offset)
{
    tsm::noteCall(size);
    return reinterpret_cast<void*>(
        syscall(SYS_mmap, address, size, protection, flags, descriptor, offset));
}

TSM_HEAP_EXPORT int munmap(void* address, std::size_t size)
{
    tsm::noteCall(0);
    return static_cast<int>(syscall(SYS_munmap, address, size));
}

#endif
