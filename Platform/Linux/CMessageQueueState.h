#pragma once

#include <cstdint>
#include <deque>
#include <mutex>

namespace tsm {

class CMessageReceiver;

/// The messages of one thread. Shared by the thread and by its receivers, since either may go
/// first; when the thread goes, the queue ends and refuses messages.
class CMessageQueueState {
public:
    struct CMessage {
        CMessageReceiver* receiver;
        std::int64_t parameter;
        std::uint64_t number; // counts up by one with each posting
        int message;
    };

    CMessageQueueState();
    ~CMessageQueueState() { end(); }
    CMessageQueueState(const CMessageQueueState&) = delete;
    CMessageQueueState& operator=(const CMessageQueueState&) = delete;

    /// Returns a system error code. [any]
    [[nodiscard]] int post(CMessageReceiver& receiver, int message, std::int64_t parameter);
    /// Drops the messages of a receiver. [any]
    void drop(const CMessageReceiver& receiver);
    /// The number of the latest message so far. [any]
    [[nodiscard]] std::uint64_t latestNumber();
    /// Takes the first message out if it was posted up to `lastNumber`. [any]
    [[nodiscard]] bool take(CMessage& message, std::uint64_t lastNumber);
    [[nodiscard]] bool hasMessages();
    /// Drops all and refuses what comes. [any]
    void end();

    [[nodiscard]] int getWakeHandle() const noexcept { return wakeHandle; }

private:
    void lowerWakeIfEmpty() noexcept;

    std::mutex lock;
    std::deque<CMessage> messages;
    std::uint64_t latest = 0;
    // Readable exactly while messages wait: changed under the lock together with them.
    int wakeHandle;
    int creationError;
    bool isEnded = false;
};

} // namespace tsm
