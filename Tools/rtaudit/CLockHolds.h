#pragma once

#include <cstdint>

namespace tsm {

/// Watches how long other threads hold one lock, in processor time: what they do under it, without
/// the time for which the system has put them aside. Also how often they took it.
class CLockHolds {
public:
    /// Begins anew with this lock, or ends with null. No thread holds it. [setup]
    static void watch(const void* lock) noexcept;
    [[nodiscard]] static std::int64_t getLongestNs() noexcept;
    [[nodiscard]] static std::int64_t getTotalNs() noexcept;
    [[nodiscard]] static int getCount() noexcept;

    /// For the probe: the calling thread holds `lock` from here on, or for the last moment.
    static void onEntered(const void* lock) noexcept;
    static void onLeaving(const void* lock) noexcept;
};

} // namespace tsm
