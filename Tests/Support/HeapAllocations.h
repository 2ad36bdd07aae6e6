#pragma once

namespace tsm {

/// How often the calling thread has asked the C library's heap for memory, by `new`, by the block
/// allocator's large blocks or by its refills; -1 where a sanitizer's heap stands in its place.
[[nodiscard]] int countHeapAllocations() noexcept;

} // namespace tsm
