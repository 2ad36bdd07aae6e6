#pragma once

namespace tsm {

/// How often the calling thread has asked the system for memory by `new`; -1 where a sanitizer's
/// allocation functions stand in place of ours. The block allocator's pool isn't counted.
[[nodiscard]] int countSystemAllocations() noexcept;

} // namespace tsm
