#pragma once

#include <cstdint>
#include <memory>

namespace tsm {

class CMessageQueueState;

/// An endpoint for messages, bound to the queue of the thread that creates it.
///
/// It is destroyed on that thread, or anywhere once that thread has ended; its undelivered messages
/// go with it. It may destroy itself, and others, while it takes a message.
class CMessageReceiver {
public:
    CMessageReceiver();
    virtual ~CMessageReceiver();
    CMessageReceiver(const CMessageReceiver&) = delete;
    CMessageReceiver& operator=(const CMessageReceiver&) = delete;

    /// Puts a message behind those that wait already and returns at once; the caller sees to it
    /// that the receiver lives meanwhile. Returns a system error code, 0 for success; an error when
    /// the receiver's thread has ended. [any]
    [[nodiscard]] int post(int message, std::int64_t parameter);

    /// Takes a message, on the receiver's thread, from inside CMessageQueue::dispatchPending().
    virtual void onMessage(int message, std::int64_t parameter) = 0;

private:
    std::shared_ptr<CMessageQueueState> queue;
};

/// The message queue of the calling thread. It is made at its first use and ends with the thread.
class CMessageQueue {
public:
    /// Delivers, in order of posting, the messages that wait at the time of the call; those posted
    /// meanwhile stay for the next call. Returns how many were delivered. May be called from inside
    /// a message. [any]
    static int dispatchPending();

    /// Waits until a message is there, at most `timeoutMs` milliseconds, without limit when
    /// negative. Tells whether one is there. [any]
    static bool wait(int timeoutMs);

    /// A system handle (a descriptor for poll) that reads as ready while messages wait, so that
    /// another run loop can call dispatchPending() in time. Owned by the queue; -1 if the system
    /// gave none. [any]
    static int getWakeHandle();
};

} // namespace tsm
