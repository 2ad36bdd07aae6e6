#pragma once

#include <cstdint>

namespace tsm {

/// The system's number of the calling thread; unique among the threads that run, never 0. [any]
[[nodiscard]] std::uint32_t currentThreadId() noexcept;

} // namespace tsm
