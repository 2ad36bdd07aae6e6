#pragma once

#include "Core/CCheckedObject.h"

#include <atomic>
#include <cassert>

namespace tsm {

/// Claims something for a scope that only one thread may be in, once. No lock: being there twice is
/// a mistake of the caller's, which builds with assertions end at once. [any]
class CExclusiveScope : public CCheckedObject {
public:
    explicit CExclusiveScope(std::atomic<bool>& flag) noexcept : isTaken(flag)
    {
        // No exchange: that would find the rare mistake in which both come at the same moment, and
        // cost a locked operation in each block.
        assert(!isTaken.load(std::memory_order_acquire) &&
               "the engine is entered twice at the same time");
        isTaken.store(true, std::memory_order_relaxed);
    }
    ~CExclusiveScope() { isTaken.store(false, std::memory_order_release); }
    CExclusiveScope(const CExclusiveScope&) = delete;
    CExclusiveScope& operator=(const CExclusiveScope&) = delete;

private:
    std::atomic<bool>& isTaken;
};

} // namespace tsm
