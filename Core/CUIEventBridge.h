#pragma once

#include "Core/CObjectEventBridge.h"
#include "Platform/CMessageQueue.h"

#include <cstdint>

namespace tsm {

class CStdEventBridge;

/// Hands events to the thread that made it, through that thread's message queue. Each event waits
/// as a copy in a table of the process under its number; only the number goes through the queue.
class CUIEventBridge : public CObjectEventBridge, private CMessageReceiver {
public:
    /// `target` is borrowed; it gets the deliveries on the calling thread.
    explicit CUIEventBridge(CStdEventBridge& target);
    ~CUIEventBridge() override;

    /// Errors: the queue refuses the message.
    [[nodiscard]] CError* post(const CAttrMap& params) override;

private:
    void onMessage(int message, std::int64_t parameter) override;

    CStdEventBridge& receiver;
};

} // namespace tsm
