#pragma once

#include "Audio/CAudioParamStorage.h"

#include <cstdint>
#include <memory>

namespace tsm {

class CAudioParam;

/// A process's link to a parameter, made by CAudioParam::subscribe. [audio]
struct CAudioParamSubscription : CTsmMemAllocator {
    CAudioParam* param = nullptr;
    const CAudioParamStorage* values = nullptr; // the process side
    std::int32_t group = -1;                    // -1 all
    std::int32_t element = -1;                  // -1 all
    std::uint32_t* dirtyGroups = nullptr;       // one bit a group; all bits for all groups
    bool* changed = nullptr;

    /// True when the change concerns what was subscribed to.
    [[nodiscard]] bool matches(const CAudioParamChange& change,
                               const CAudioParamShape& shape) const noexcept;
    /// Sets the flag, and the bits of the change's groups.
    void mark(const CAudioParamChange& change) const noexcept;
};

/// Ends a subscription where it is held.
struct CUnsubscriber {
    void operator()(CAudioParamSubscription* subscription) const noexcept;
};
/// A subscription that ends with its holder, before the parameter does. [audio]
using CAudioParamSubscriptionPtr = std::unique_ptr<CAudioParamSubscription, CUnsubscriber>;

} // namespace tsm
