#pragma once

#include "Platform/CMessageQueue.h"
#include "Platform/CSystemTimer.h"

#include <atomic>
#include <cstdint>

namespace tsm {

/// A periodic call from the message queue of the thread that makes this object. At most one tick
/// waits in the queue: a thread that takes no messages for a while gets one tick for all that it
/// missed.
class CMessageTimer : private CMessageReceiver {
public:
    /// It may end its timer. [the timer's thread, from CMessageQueue::dispatchPending()]
    using CCallback = void (*)(void* context);

    /// `context` is borrowed.
    CMessageTimer(CCallback callback, void* context);
    ~CMessageTimer() override;

    /// Starts, or starts anew, with the first tick after one period of `periodMs` milliseconds (at
    /// least 1). Returns a system error code, 0 for success. On the timer's thread.
    [[nodiscard]] int start(std::int64_t periodMs);

private:
    static void postTick(void* self);
    void onMessage(int message, std::int64_t parameter) override;

    const CCallback callback;
    void* const context;
    std::atomic<bool> isTickPosted = false;
    CSystemTimer timer; // last: it stops posting before the rest goes
};

} // namespace tsm
