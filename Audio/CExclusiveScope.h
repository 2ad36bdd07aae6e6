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
        [[maybe_unused]] const bool wasTaken = isTaken.exchange(true, std::memory_order_acquire);
        assert(!wasTaken && "the engine is entered twice at the same time");
    }
    ~CExclusiveScope() { isTaken.store(false, std::memory_order_release); }
    CExclusiveScope(const CExclusiveScope&) = delete;
    CExclusiveScope& operator=(const CExclusiveScope&) = delete;

private:
    std::atomic<bool>& isTaken;
};

} // namespace tsm
