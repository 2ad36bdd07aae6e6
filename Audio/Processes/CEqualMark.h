#pragma once

#include <atomic>
#include <cstdint>

namespace tsm {

/// Stands beside a value that is large and seldom changes, and is compared with the same other one
/// in each block: remembers which state of the other it was last found equal to.
class CEqualMark {
public:
    /// To be called after each change of the value. [any] No lock.
    void renew() noexcept
    {
        static std::atomic<std::uint64_t> count{0};
        version = count.fetch_add(1, std::memory_order_relaxed);
        equalVersion = kNone;
    }
    /// Whether both values are equal; `value` is the one that this mark stands beside.
    template <class T>
    [[nodiscard]] bool isEqual(const T& value, const CEqualMark& otherMark,
                               const T& otherValue) noexcept
    {
        if (otherMark.version == equalVersion && equalVersion != kNone)
            return true;
        if (!(value == otherValue))
            return false;
        equalVersion = otherMark.version;
        return true;
    }

private:
    static constexpr std::uint64_t kNone = ~std::uint64_t{0}; // never changed, or none so far

    std::uint64_t version = kNone;
    std::uint64_t equalVersion = kNone; // of the other value
};

} // namespace tsm
