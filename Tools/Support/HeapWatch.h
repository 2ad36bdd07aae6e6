#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace tsm {

/// Sees every call of the C library's heap in this process, those of loaded modules with a C++
/// runtime of their own too: the program defines the heap's functions itself, and the dynamic
/// linker looks for them in the program first. In a build with a sanitizer, whose own heap stands
/// there, its hooks tell the same.

/// Whether the heap is the C library's. With a sanitizer's, its runtime keeps memory too: for each
/// module loaded, and for blocks given back.
[[nodiscard]] bool isHeapPlain() noexcept;

/// What all threads hold.
struct CHeapUse {
    std::int64_t blockCount = 0;
    std::int64_t byteCount = 0;
};
/// [any] No lock.
[[nodiscard]] CHeapUse getHeapUse() noexcept;

/// What one thread has called since beginHeapWatch().
struct CHeapCalls {
    static constexpr int kMaxFrames = 24;

    std::int64_t callCount = 0; // requests, releases and mappings of memory
    std::int64_t takenCount = 0;
    std::int64_t givenCount = 0;
    std::size_t largest = 0; // bytes of the largest request
    void* firstCall[kMaxFrames] = {};
    int firstCallDepth = 0;
};
/// Starts counting on this thread; the first call's stack is looked at, which takes time and memory
/// of its own, if `keepsStack`. Scopes don't nest.
void beginHeapWatch(bool keepsStack = true) noexcept;
/// Ends it and tells what there was.
[[nodiscard]] CHeapCalls endHeapWatch() noexcept;

/// The first call's stack, innermost place first, as "module+0x123" for tools that name source
/// lines, without the places in this program.
[[nodiscard]] std::string describeFirstCall(const CHeapCalls& calls);

} // namespace tsm
