#pragma once

#include <cstdint>

namespace tsm {

/// The monotonic clock. It never steps back or jumps with the calendar time.
class CClock {
public:
    /// Ticks since an arbitrary start, `frequency()` of them a second. [any] No system call on
    /// the usual road.
    [[nodiscard]] static std::int64_t counter() noexcept;
    /// Ticks a second; constant. [any]
    [[nodiscard]] static std::int64_t frequency() noexcept;
    /// Seconds since the first call of this function in the process, which returns 0. [any]
    [[nodiscard]] static double seconds() noexcept;
};

} // namespace tsm
